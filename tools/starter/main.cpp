// The starter, the reference caller of EmbeddedBrowser: see --help.

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>

#include "tools/starter/Options.h"
#include "tools/starter/Sentences.h"
#include "tools/starter/TapeOfStep.h"

namespace {

using ebStarter::Outcome;
using ebStarter::StopSwitch;
using ebStarter::Verdict;
using std::chrono::milliseconds;

constexpr int kWrongUsage = 2;

StopSwitch* g_stop = nullptr;

// SIGHUP, SIGINT and SIGTERM stop the step, unless whoever started this program had them ignored.
void CatchSignals() {
  struct sigaction action = {};
  action.sa_handler = [](int number) { g_stop->Stop(number); };
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction former;
    sigaction(number, nullptr, &former);
    if (former.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
  // Where it is ignored, nobody learns how a child ended.
  signal(SIGCHLD, SIG_DFL);
}

void Complain(const std::string& what) {
  std::fprintf(stderr, "embedded-browser-start: %s\n", what.c_str());
}

void PrintJson(const Outcome& outcome) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.StartObject();
  writer.Key("verdict");
  writer.String(VerdictName(outcome.verdict));
  writer.Key("status");
  writer.Int(static_cast<int>(outcome.verdict));
  writer.Key("reason");
  writer.String(outcome.reason.c_str());
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
  document.Parse(outcome.json.c_str());
  document.Accept(writer);
  writer.EndObject();
  std::puts(buffer.GetString());
}

void PrintLine(const Outcome& outcome, const Sentences& sentences) {
  std::printf("%s%s%s\n", VerdictName(outcome.verdict), outcome.detail.empty() ? "" : ": ",
              outcome.detail.c_str());
  switch (outcome.verdict) {
    case Verdict::kNotStarted:
    case Verdict::kNothingWritten:
    case Verdict::kCrashed:
    case Verdict::kUnreadable:
    case Verdict::kBrowserFailed:
      std::fflush(stdout);
      std::fprintf(stderr, "%s\n", sentences.Hint().c_str());
      break;
    default:
      break;
  }
}

// One line on the terminal, overwritten every second and by whatever the helper prints.
ebStarter::Progress ProgressOnTerminal(milliseconds limit, const Sentences& sentences) {
  if (!isatty(STDERR_FILENO)) return nullptr;
  return [limit, &sentences](milliseconds elapsed) {
    const auto left = std::max(std::chrono::ceil<std::chrono::seconds>(limit - elapsed),
                               std::chrono::seconds::zero());
    std::fprintf(stderr, "\r\033[K%s\r", sentences.Progress(left.count()).c_str());
  };
}

}  // namespace

int main(int argc, char** argv) {
  // For this program and what it starts: their memory holds cookies. 1, since a Linux that hands
  // core files to a program does so with a limit of 0, too.
  const rlimit no_core_file = {1, 1};
  setrlimit(RLIMIT_CORE, &no_core_file);
  Options options;
  options.step.program = EB_STARTER_PROGRAM;
  const char* const home = std::getenv("HOME");
  options.step.home = home ? home : "";
  const std::string wrong =
      ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc), options);
  if (options.help) return std::fputs(kHelp, stdout) < 0;
  if (options.version) return std::puts("embedded-browser-start " EB_STARTER_VERSION) < 0;
  const std::string& remark = wrong.empty() ? options.warning : wrong;
  if (!remark.empty()) Complain(remark + (wrong.empty() ? "" : " (see --help)"));
  if (!wrong.empty()) return kWrongUsage;

  std::optional<TapeOfStep> tape;
  if (!options.tape.empty()) {
    // Before the signals are caught, and while there is one thread.
    if (const std::string problem = TapeOfStep::Begin(options, tape); !problem.empty()) {
      Complain("nothing was run, as it cannot be recorded: " + problem);
      return kWrongUsage;
    }
  }
  const Sentences sentences;
  std::optional<StopSwitch> stop;
  Outcome outcome;
  try {
    g_stop = &stop.emplace();
    CatchSignals();
    options.step.stop = g_stop;
    options.step.progress = ProgressOnTerminal(options.step.limits.time, sentences);
    outcome = RunStep(options.step);
  } catch (const std::exception& error) {
    outcome.detail = error.what();
  }
  if (tape) {
    const std::string problem = tape->End(outcome);
    if (!problem.empty()) Complain("the tape is not right: " + problem);
  }
  outcome.detail = sentences.DetailOf(outcome, options.step.request.type);
  if (options.step.progress) std::fputs("\r\033[K", stderr);
  if (options.json) {
    PrintJson(outcome);
  } else {
    PrintLine(outcome, sentences);
  }
  std::fflush(stdout);
  // A late signal must not find the switch gone.
  _exit(static_cast<int>(outcome.verdict));
}
