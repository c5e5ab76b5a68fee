#include "bench/functions/Pairs.h"

#include <malloc.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <map>

#include "tests/support/LogArea.h"

namespace {

std::vector<Pair> pairs;
std::vector<Curve> curves;
std::string wanted;
bool brief = false;

// Keeps the seconds that an iteration took, by the benchmark's name: those of the processor, which
// other processes do not lengthen, or those that a timed body has stated.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      seconds[run.run_name.function_name] =
          (run.run_name.time_type.empty() ? run.cpu_accumulated_time : run.real_accumulated_time) /
          static_cast<double>(run.iterations);
    }
  }
  std::map<std::string, double> seconds;
};

void Register(const std::string& name, const Body& body, bool timed, double least_seconds) {
  auto* benchmark = benchmark::RegisterBenchmark(name.c_str(), body);
  if (timed) {
    benchmark->UseManualTime()->Iterations(1);
  } else {
    benchmark->MinTime(least_seconds);
  }
}

// The value below which `part` of the values lie.
double Quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  const double at = part * static_cast<double>(values.size() - 1);
  const size_t below = static_cast<size_t>(at);
  const size_t above = std::min(below + 1, values.size() - 1);
  return values[below] + (values[above] - values[below]) * (at - static_cast<double>(below));
}

std::string AimText(double aim) { return aim > 0 ? std::to_string(aim) : "null"; }

void Measure(const Pair& pair, const std::string& name, int rounds) {
  Collector collector;
  std::vector<double> ours, theirs, ratios;
  for (int round = 0; round <= rounds; ++round) {
    benchmark::RunSpecifiedBenchmarks(&collector, "^" + name + "\\.");
    if (round == 0) continue;  // the warm-up
    for (const auto& [values, end] : {std::pair(&ours, ".ours"), std::pair(&theirs, ".theirs")}) {
      const double seconds = collector.seconds.at(name + end);
      values->push_back(pair.items ? pair.items / (seconds * 1e3) : seconds * 1e6);
    }
    ratios.push_back(ours.back() / theirs.back());
  }
  printf(R"({"figure": "%s", "against": "%s", "ours": %.4g, "theirs": %.4g, "unit": "%s", )"
         R"("ratio": %.4g, "spread": [%.4g, %.4g], "pairs": %d, "aim": %s, "better": "%s"})"
         "\n",
         pair.figure.c_str(), pair.against.c_str(), Quantile(ours, 0.5), Quantile(theirs, 0.5),
         pair.items ? "1/ms" : "us", Quantile(ratios, 0.5), Quantile(ratios, 0.25),
         Quantile(ratios, 0.75), rounds, AimText(pair.aim).c_str(),
         pair.items ? "higher" : "lower");
  if (pair.limit_us > 0) {
    printf(R"({"figure": "%s", "against": "", "ours": %.4g, "theirs": null, "unit": "us", )"
           R"("ratio": null, "spread": [%.4g, %.4g], "pairs": %d, "aim": %s, "better": "lower"})"
           "\n",
           pair.figure.c_str(), Quantile(ours, 0.5), Quantile(ours, 0.25), Quantile(ours, 0.75),
           rounds, AimText(pair.limit_us).c_str());
  }
  fflush(stdout);
}

void Measure(const Curve& curve, const std::string& name, int rounds) {
  Collector collector;
  std::map<int, std::vector<double>> times;
  for (int round = 0; round < rounds; ++round) {
    benchmark::RunSpecifiedBenchmarks(&collector, "^" + name + "\\.");
    for (const int x : curve.xs) {
      times[x].push_back(collector.seconds.at(name + "." + std::to_string(x)) * 1e6);
    }
  }
  std::string xs, ys;
  for (const auto& [x, values] : times) {
    const char* const comma = xs.empty() ? "" : ", ";
    xs += comma + std::to_string(x);
    ys += comma + std::to_string(Quantile(values, 0.5));
  }
  printf(R"({"curve": "%s", "x": [%s], "y": [%s], "unit": "us", "x_unit": "%s"})"
         "\n",
         curve.figure.c_str(), xs.c_str(), ys.c_str(), curve.x_unit.c_str());
  fflush(stdout);
}

}  // namespace

void AddPair(Pair pair) {
  if (brief && !pair.in_short) return;
  if (pair.figure.find(wanted) != std::string::npos) pairs.push_back(std::move(pair));
}

void AddCurve(Curve curve) {
  if (curve.figure.find(wanted) != std::string::npos) curves.push_back(std::move(curve));
}

// benchFunctions [--short] [PART OF A FIGURE'S NAME]: with --short, fewer and shorter measurements,
// and no curves.
int main(int argc, char** argv) {
  brief = argc > 1 && strcmp(argv[1], "--short") == 0;
  if (argc > (brief ? 2 : 1)) wanted = argv[argc - 1];
  const double least_seconds = brief ? 0.004 : 0.02;
  // Otherwise the system's clearing of pages for large texts would be most of what is measured.
  mallopt(M_MMAP_THRESHOLD, 1 << 28);
  mallopt(M_TRIM_THRESHOLD, 1 << 28);
  int one = 1;
  benchmark::Initialize(&one, argv);
  // The C library's conversions take theirs from the locale.
  if (!setlocale(LC_CTYPE, "C.UTF-8")) return 1;
  // As in the product, the log has been joined, and is at its usual level.
  const LogArea area;
  KXLogSetModuleName("bench");
  if (KXLogInitialize() != 1) return 1;

  AddLogging();
  AddTexts();
  AddRequests();
  const auto name = [](const char* kind, size_t i) { return kind + std::to_string(i); };
  for (size_t i = 0; i < pairs.size(); ++i) {
    const bool timed = pairs[i].items != 0;
    Register(name("pair", i) + ".ours", pairs[i].ours, timed, least_seconds);
    Register(name("pair", i) + ".theirs", pairs[i].theirs, timed, least_seconds);
  }
  for (size_t i = 0; i < pairs.size(); ++i) Measure(pairs[i], name("pair", i), brief ? 9 : 15);
  if (brief) return 0;
  for (size_t i = 0; i < curves.size(); ++i) {
    for (const int x : curves[i].xs) {
      Register(name("curve", i) + "." + std::to_string(x), curves[i].body(x), curves[i].timed,
               least_seconds);
    }
    Measure(curves[i], name("curve", i), 5);
  }
}
