// What the user's last runs have written, for a bundle: the client's log and the browser's.

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "libs/kxaccess/RunPaths.h"
#include "tools/doctor/Bundle.h"
#include "tools/log/LogFiles.h"
#include "tools/log/Output.h"
#include "tools/log/Runs.h"
#include "tools/log/Secrets.h"
#include "tools/log/Story.h"

namespace doctor {

namespace {

using log_reader::Record;

constexpr size_t kExplainedRuns = 5;
constexpr size_t kListedRuns = 100;
constexpr size_t kRecords = 2000;
constexpr off_t kBrowserLogBytes = 64 << 10;

// The user as the log's writers call him.
std::string UserInLog() {
  const passwd* const user = getpwuid(getuid());
  return user ? user->pw_name : "Unknown_User";
}

std::string Records(const log_reader::Run& run) {
  const size_t first = run.records.size() - std::min(run.records.size(), kRecords);
  std::string text;
  for (size_t i = first; i < run.records.size(); ++i) {
    text += PlainText(WithoutSecrets(run.records[i]));
  }
  return text;
}

}  // namespace

std::vector<BundledFile> CollectRuns() {
  std::vector<Record> records;
  const std::string path = log_reader::FindLog();
  log_reader::LogFiles log(path);
  const std::string user = UserInLog();
  BundledFile list = {"runs.txt", "list of your last sign-ins, with how each ended", ""};
  list.text = log.Read([&](const Record& record) {
    if (record.user == user) records.push_back(record);
  });
  list.text += list.text.empty() ? "" : "\n";
  const std::vector<log_reader::Run> runs = log_reader::FindRuns(std::move(records));
  if (runs.empty()) list.text += path + " holds no run of the user " + user + "\n";
  const size_t first = runs.size() - std::min(runs.size(), kListedRuns);
  for (size_t i = first; i < runs.size(); ++i) list.text += Summary(runs[i]) + "\n";
  std::vector<BundledFile> files = {list};
  for (size_t back = 0; back < std::min(runs.size(), kExplainedRuns); ++back) {
    const log_reader::Run& run = runs[runs.size() - 1 - back];
    std::ostringstream story;
    Explain(Tell(run), story);
    const std::string number = std::to_string(back + 1);
    files.push_back({"run-" + number + ".txt",
                     back == 0 ? "the last one explained" : "one of those before it explained",
                     story.str()});
  }
  if (!runs.empty())
    files.push_back({"records.txt", "the last one's records", Records(runs.back())});
  return files;
}

std::vector<BundledFile> CollectBrowserLog() {
  BundledFile file = {"browser-log.txt", "the end of what Chromium has written", "none\n"};
  const int log =
      open(RunPaths::FromEnvironment().browser_log.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat info;
  if (log >= 0 && fstat(log, &info) == 0 && S_ISREG(info.st_mode)) {
    std::string bytes(kBrowserLogBytes, '\0');
    const off_t begin = std::max<off_t>(0, info.st_size - kBrowserLogBytes);
    const ssize_t count = pread(log, bytes.data(), bytes.size(), begin);
    bytes.resize(static_cast<size_t>(std::max<ssize_t>(0, count)));
    std::istringstream lines(bytes);
    file.text.clear();
    std::string line;
    // Half a line does not show what was before its values.
    if (begin > 0) std::getline(lines, line);
    while (std::getline(lines, line)) {
      file.text += log_reader::Harmless(log_reader::HideSecrets(line)) + "\n";
    }
  }
  if (log >= 0) close(log);
  return {file};
}

}  // namespace doctor
