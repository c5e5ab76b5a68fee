// Jobs measured side by side: ours and somebody else's way of doing the same, in turn.
//
// Results go to standard output, one JSON object a line, in the format that report.py reads.

#ifndef BENCH_FUNCTIONS_PAIRS_H_
#define BENCH_FUNCTIONS_PAIRS_H_

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

using Body = std::function<void(benchmark::State&)>;

// A body that repeats `job`, whose result is kept from being optimised away.
template <typename Job>
Body Repeat(Job job) {
  return [job](benchmark::State& state) mutable {
    for ([[maybe_unused]] auto step : state) benchmark::DoNotOptimize(job());
  };
}

// A body that is run once a measurement and says itself how many seconds that took.
template <typename Job>
Body Timed(Job job) {
  return [job](benchmark::State& state) mutable {
    for ([[maybe_unused]] auto step : state) state.SetIterationTime(job());
  };
}

struct Pair {
  std::string figure;
  std::string against;  // what `theirs` is
  double aim;           // for the ratio of ours to theirs; 0: none
  Body ours;
  Body theirs;
  double limit_us = 0;  // an aim for ours alone; 0: none
  int items = 0;        // of a Timed body: reported, and compared, as items a millisecond
  bool in_short = true;
};

// How the time of one job grows with the number of things in it. A Timed body if `timed`.
struct Curve {
  std::string figure;
  std::string x_unit;
  std::vector<int> xs;
  std::function<Body(int x)> body;
  bool timed = false;
};

void AddPair(Pair pair);
void AddCurve(Curve curve);

// What there is to measure; each file of this folder has one.
void AddLogging();
void AddTexts();
void AddRequests();

#endif  // BENCH_FUNCTIONS_PAIRS_H_
