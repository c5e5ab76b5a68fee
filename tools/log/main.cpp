// Reads the log of the client's programs: see --help.

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "tools/log/ControlBlock.h"
#include "tools/log/LogFiles.h"
#include "tools/log/Options.h"
#include "tools/log/Output.h"
#include "tools/log/Picture.h"
#include "tools/log/Runs.h"
#include "tools/log/Secrets.h"
#include "tools/log/Story.h"

namespace {

using log_reader::Options;
using log_reader::Record;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int Complain(const std::string& problem, int status = kFailed) {
  std::fprintf(stderr, "embedded-browser-log: %s\n", log_reader::Harmless(problem).c_str());
  return status;
}

int End(int status) { return std::fflush(stdout) == 0 ? status : Complain(std::strerror(errno)); }

// Whether anybody still reads what is printed; looks again after a moment.
bool Wait() {
  constexpr int kMoment = 200;  // milliseconds
  pollfd output = {STDOUT_FILENO, 0, 0};
  return poll(&output, 1, kMoment) == 0;
}

void PrintRecord(const Options& options, const Record& found) {
  const Record record = options.secrets ? found : WithoutSecrets(found);
  const std::string text = options.json ? JsonText(record) : PlainText(record);
  std::fwrite(text.data(), 1, text.size(), stdout);
}

int PrintRecords(const Options& options) {
  bool shown = !options.follow || !options.filter.since.empty();
  log_reader::LogFiles log(options.file.empty() ? log_reader::FindLog() : options.file);
  const auto print = [&](const Record& record) {
    if (shown && options.filter.Lets(record)) PrintRecord(options, record);
  };
  std::string problem;
  do {
    problem = log.Read(print);
    shown = true;
  } while (options.follow && problem.empty() && std::fflush(stdout) == 0 && Wait());
  if (log.faults() != 0) {
    Complain(std::to_string(log.faults()) + " pieces of the log are no whole records");
  }
  return problem.empty() ? End(0) : End(Complain(problem));
}

// The runs in those records that the filter lets through.
std::string ReadRuns(const Options& options, std::vector<log_reader::Run>& runs) {
  std::vector<Record> records;
  log_reader::LogFiles log(options.file.empty() ? log_reader::FindLog() : options.file);
  const std::string problem = log.Read([&](const Record& record) {
    if (options.filter.Lets(record)) records.push_back(record);
  });
  runs = log_reader::FindRuns(std::move(records));
  return problem;
}

int PrintRun(const Options& options) {
  std::vector<log_reader::Run> runs;
  std::string problem = ReadRuns(options, runs);
  const log_reader::Run* run =
      problem.empty() ? ChooseRun(runs, options.only_run, problem) : nullptr;
  if (!run) return Complain(problem);
  for (const Record& record : run->records) PrintRecord(options, record);
  return End(0);
}

int ListRuns(const Options& options) {
  std::vector<log_reader::Run> runs;
  const std::string problem = ReadRuns(options, runs);
  for (const log_reader::Run& run : runs) std::puts(Summary(run).c_str());
  return problem.empty() ? End(0) : End(Complain(problem));
}

int TellStory(const Options& options) {
  std::vector<log_reader::Run> runs;
  std::string problem = ReadRuns(options, runs);
  if (!problem.empty()) return Complain(problem);
  const log_reader::Run* run = ChooseRun(runs, options.run, problem);
  if (!run) return Complain(problem);
  const log_reader::Story story = Tell(*run);
  if (options.explain) Explain(story, std::cout);
  if (!options.picture.empty()) {
    std::ofstream file(options.picture, std::ios::trunc);
    if (file) Draw(story, file);
    file.close();
    if (!file) return Complain(options.picture + " cannot be written");
  }
  std::cout.flush();
  return std::cout ? End(0) : Complain("the story cannot be printed");
}

int ShowLevel() {
  int level = 0;
  const std::string problem = log_reader::ReadLevel(level);
  if (!problem.empty()) return Complain(problem);
  std::printf("%d\n", level);
  return End(0);
}

int SetLevel(const Options& options) {
  const std::string problem = log_reader::SetLevel(options.level);
  return problem.empty() ? 0 : Complain("the level stays as it is: " + problem);
}

int Print(const char* text) {
  std::fputs(text, stdout);
  return End(0);
}

}  // namespace

int main(int argc, char** argv) {
  // Everybody can take the control block's memory away while it is looked at.
  std::signal(SIGBUS, [](int) {
    constexpr char kTaken[] = "embedded-browser-log: the control block has been taken away\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kTaken, sizeof kTaken - 1);
    _exit(kFailed);
  });
  Options options;
  const std::string wrong =
      ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc), options);
  if (!wrong.empty()) return Complain(wrong + " (see --help)", kWrongUsage);
  switch (options.command) {
    case Options::Command::kRecords:
      return options.only_run.empty() ? PrintRecords(options) : PrintRun(options);
    case Options::Command::kRuns:
      return ListRuns(options);
    case Options::Command::kStory:
      return TellStory(options);
    case Options::Command::kShowLevel:
      return ShowLevel();
    case Options::Command::kSetLevel:
      return SetLevel(options);
    case Options::Command::kHelp:
      return Print(log_reader::kHelp);
    case Options::Command::kVersion:
      return Print("embedded-browser-log " EB_LOG_VERSION "\n");
  }
}
