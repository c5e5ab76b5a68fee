#include "tools/log/Runs.h"

#include <charconv>
#include <map>
#include <utility>

namespace log_reader {

namespace {

constexpr std::string_view kBegin = "inside cefBrowser";
// The program's name for itself; its parts that show questions use another one.
constexpr std::string_view kModule = "cefBrowser";

bool ReadNumber(std::string_view digits, size_t& number) {
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
  return error == std::errc() && end == digits.end() && !digits.empty();
}

}  // namespace

std::vector<Run> FindRuns(std::vector<Record> records) {
  std::vector<Run> runs;
  // Containers have process numbers of their own, but the users' names mostly differ.
  std::map<std::pair<pid_t, std::string>, size_t> latest;
  for (Record& record : records) {
    const auto key = std::make_pair(record.process, record.user);
    const bool begins = record.module == kModule && record.message == kBegin;
    const auto found = latest.find(key);
    // The number may have passed on to another program.
    const bool known =
        found != latest.end() && runs[found->second].records[0].program == record.program;
    if (!begins && !known && record.module != kModule) continue;
    if (begins || !known) {
      latest[key] = runs.size();
      runs.push_back({record.process, record.user, begins, {}});
    }
    runs[latest[key]].records.push_back(std::move(record));
  }
  return runs;
}

const Run* ChooseRun(const std::vector<Run>& runs, std::string_view name, std::string& problem) {
  constexpr std::string_view kLast = "last";
  size_t number = 0;
  if (name.substr(0, kLast.size()) == kLast) {
    name.remove_prefix(kLast.size());
    if (name.empty() || (name[0] == '-' && ReadNumber(name.substr(1), number))) {
      if (number < runs.size()) return &runs[runs.size() - 1 - number];
      problem = runs.empty() ? "the log holds no run"
                             : "the log holds only " + std::to_string(runs.size()) + " runs";
      return nullptr;
    }
  } else {
    if (!name.empty() && name[0] == 'p') name.remove_prefix(1);
    if (ReadNumber(name, number)) {
      for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        if (run->process == static_cast<pid_t>(number)) return &*run;
      }
      problem = "the log holds no run of process " + std::to_string(number);
      return nullptr;
    }
  }
  problem = "a run is named by its process number, or as last, last-1 and so on";
  return nullptr;
}

}  // namespace log_reader
