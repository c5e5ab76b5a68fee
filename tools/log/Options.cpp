#include "tools/log/Options.h"

#include <charconv>

namespace log_reader {

namespace {

bool ReadNumber(const std::string& text, int least, int most, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= least &&
         number <= most;
}

// An option that takes no value; false when it is none of these.
bool TakeFlag(const std::string& option, Options& options) {
  using Command = Options::Command;
  const struct {
    const char* name;
    Command command;
  } kCommands[] = {{"--runs", Command::kRuns},
                   {"--level", Command::kShowLevel},
                   {"--help", Command::kHelp},
                   {"-h", Command::kHelp},
                   {"--version", Command::kVersion}};
  for (const auto& known : kCommands) {
    if (option == known.name) return options.command = known.command, true;
  }
  if (option == "--explain") {
    options.command = Command::kStory;
    return options.explain = true;
  }
  const struct {
    const char* name;
    bool& flag;
  } kFlags[] = {
      {"--follow", options.follow}, {"--json", options.json}, {"--secrets", options.secrets}};
  for (const auto& known : kFlags) {
    if (option == known.name) return known.flag = true;
  }
  return false;
}

// Where the text that an option takes goes; null when it is none of these.
std::string* TextOf(const std::string& option, Options& options) {
  const struct {
    const char* name;
    std::string& text;
  } kTexts[] = {{"--file", options.file},
                {"--run", options.only_run},
                {"--user", options.filter.user},
                {"--program", options.filter.program},
                {"--module", options.filter.module},
                {"--grep", options.filter.text},
                {"--since", options.filter.since},
                {"--until", options.filter.until}};
  for (const auto& known : kTexts) {
    if (option == known.name) return &known.text;
  }
  return nullptr;
}

std::string TakeValue(const std::string& option, const std::string& value, Options& options) {
  if (option == "--level") {
    options.command = Options::Command::kSetLevel;
    return ReadNumber(value, 1, 5, options.level) ? "" : "--level takes a level, 1 to 5";
  }
  if (option == "--explain" || option == "--picture") {
    options.command = Options::Command::kStory;
    options.explain |= option == "--explain";
    (option == "--explain" ? options.run : options.picture) = value;
    return value.empty() ? option + " needs a value" : "";
  }
  if (option == "--up-to-level") {
    return ReadNumber(value, 1, 5, options.filter.level) ? "" : option + " takes a level, 1 to 5";
  }
  if (option == "--process") {
    return ReadNumber(value, 1, 1 << 30, options.filter.process) ? ""
                                                                 : option + " takes its number";
  }
  std::string& text = *TextOf(option, options);
  const bool is_time = option == "--since" || option == "--until";
  text = is_time ? ReadTime(value, time(nullptr)) : value;
  if (!text.empty()) return "";
  return is_time ? option +
                       " takes a time, such as 2026/11/21, \"2026/11/21 21:55\", 21:55 or \"5 min\""
                 : option + " needs a value";
}

bool TakesValue(const std::string& option, Options& options) {
  return option == "--process" || option == "--picture" || option == "--up-to-level" ||
         TextOf(option, options);
}

}  // namespace

const char kHelp[] =
    R"(embedded-browser-log: reads the log of the client's programs.

  --run RUN, --process N, --user NAME, --program NAME
                     only records of that run, process, user or program
  --module NAME      only those of a module, by its name or its tag
  --up-to-level N    only up to this level: 1 errors … 5 finest detail
  --since TIME, --until TIME
                     only from that time on, or up to it: 2026/11/21,
                     "2026/11/21 21:55", 21:55 (today), "5 min" (ago), now
  --grep TEXT        only records with that text in their message
  --follow           go on with what comes (without --since: only that)
  --file FILE        read a copy of a log, and FILE.old if it is there
  --json             print a JSON object for each record
  --runs             list the runs, each with its end
  --explain [RUN]    tell a run and its end; RUN: a process number, last, last-1 …
  --picture FILE     draw it (SVG); alone: the last run
  --secrets          show cookies, parameters of addresses and the like, too
  --level [N]        print the level up to which programs write, or set it, 1 to 5
  --help, --version  print this text, or the version

Reads the rotated file first. Exit status: 0 done, 1 the log cannot be read or the
level cannot be set, 2 wrong usage.
)";

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const size_t equals = arguments[i].find('=');
    const bool joined = equals != std::string::npos;
    const std::string option = arguments[i].substr(0, equals);
    const bool has_next = i + 1 < arguments.size();
    const bool has_value = (option == "--level" || option == "--explain") &&
                           (joined || (has_next && arguments[i + 1].rfind("--", 0) != 0));
    if (!joined && !has_value && TakeFlag(option, options)) {
      if (options.command == Options::Command::kHelp ||
          options.command == Options::Command::kVersion) {
        return "";
      }
      continue;
    }
    if (!has_value && !TakesValue(option, options)) {
      return TakeFlag(option, options) ? option + " takes no value" : "unknown argument " + option;
    }
    if (!joined && !has_next) return option + " needs a value";
    const std::string value = joined ? arguments[i].substr(equals + 1) : arguments[++i];
    const std::string wrong = TakeValue(option, value, options);
    if (!wrong.empty()) return wrong;
  }
  const size_t alone = options.command == Options::Command::kShowLevel  ? 1
                       : options.command == Options::Command::kSetLevel ? 2
                                                                        : arguments.size();
  const bool of_runs =
      options.command == Options::Command::kRuns || options.command == Options::Command::kStory;
  if (of_runs && (options.follow || options.json || !options.only_run.empty())) {
    return "--runs, --explain and --picture go without --follow, --json and --run";
  }
  if (options.follow && !options.only_run.empty()) return "--run goes without --follow";
  return arguments.size() > alone ? "--level goes with no other option" : "";
}

}  // namespace log_reader
