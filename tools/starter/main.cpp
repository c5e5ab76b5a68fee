// The reference caller of the browser helper: see --help.

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tools/starter/Options.h"

namespace {

constexpr int kWrongUsage = 2;

void PrintJson(const StepOutcome& outcome) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.StartObject();
  writer.Key("verdict");
  writer.String(VerdictName(outcome.verdict));
  writer.Key("status");
  writer.Int(static_cast<int>(outcome.verdict));
  writer.Key("detail");
  writer.String(outcome.detail.c_str());
  writer.Key("milliseconds");
  writer.Int64(outcome.end.duration.count());
  writer.Key("helper_process");
  writer.Int64(outcome.end.pid);
  writer.Key("helper_exit_status");
  writer.Int(outcome.end.exit_status);
  writer.Key("helper_killed_by");
  writer.Int(outcome.end.killed_by);
  writer.Key("return_data");
  rapidjson::Document document;
  document.Parse(outcome.document.c_str());
  document.Accept(writer);
  writer.EndObject();
  std::puts(buffer.GetString());
}

// One line on the terminal that is written over every second.
Progress ProgressOnTerminal(const HelperLimits& limits) {
  if (!isatty(STDERR_FILENO)) return nullptr;
  const long long limit = std::chrono::duration_cast<std::chrono::seconds>(limits.time).count();
  return [limit](std::chrono::milliseconds elapsed) {
    const long long seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    std::fprintf(stderr, "\rwaiting for the browser step, %lld s of %lld s ", seconds, limit);
  };
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  options.step.program = EB_STARTER_PROGRAM;
  const char* const home = std::getenv("HOME");
  options.step.home = home ? home : "";
  const std::string wrong =
      ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc), options);
  if (options.help) return std::fputs(kHelp, stdout) < 0;
  if (!wrong.empty()) {
    std::fprintf(stderr, "embedded-browser-start: %s (see --help)\n", wrong.c_str());
    return kWrongUsage;
  }
  options.step.progress = ProgressOnTerminal(options.step.limits);
  const StepOutcome outcome = RunStep(options.step);
  if (options.step.progress) std::fputs("\r\033[K", stderr);
  if (options.json) {
    PrintJson(outcome);
  } else {
    std::printf("%s%s%s\n", VerdictName(outcome.verdict), outcome.detail.empty() ? "" : ": ",
                outcome.detail.c_str());
  }
  return static_cast<int>(outcome.verdict);
}
