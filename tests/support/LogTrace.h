// What this process writes to the log while the object lives, at every level.

#ifndef TESTS_SUPPORT_LOGTRACE_H_
#define TESTS_SUPPORT_LOGTRACE_H_

#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#include "tests/support/TempDir.h"

// Joins the log and raises its level to 5, which all processes share, for as long as it lives.
// Tests that use it take the lock "kxlog" and link kxlog.
class LogTrace {
 public:
  LogTrace() {
    if (!KXLogInitialize()) throw std::runtime_error("cannot join the log");
    char pid[16];
    std::snprintf(pid, sizeof pid, " p%04d ", getpid());
    pid_field_ = pid;
    SetLevel(5);
    start_ = ReadFile(ControlBlock()->path).size();
  }
  ~LogTrace() {
    SetLevel(3);
    KXLogCleanup();
  }
  LogTrace(const LogTrace&) = delete;
  LogTrace& operator=(const LogTrace&) = delete;

  // The records since the start or the last call, each as "1 'CEF' message", without the tag when
  // the record has none.
  std::vector<std::string> Take() {
    const std::string log = ReadFile(ControlBlock()->path);
    std::istringstream added(log.substr(log.size() < start_ ? 0 : start_));
    start_ = log.size();
    std::vector<std::string> records;
    for (std::string line; std::getline(added, line);) {
      const size_t message = line.find(" - ");
      if (line.find(pid_field_) > message || message == std::string::npos) continue;
      if (line.back() == '\r') line.pop_back();
      // Length, date and time stand before the level.
      constexpr size_t kLevelAt = sizeof "00187,09 2026/11/14 18:54:09.123 " - 1;
      records.push_back(line.substr(kLevelAt, 1) + line.substr(message + 2));
    }
    return records;
  }

 private:
  static void SetLevel(int level) {
    LogLock();
    ControlBlock()->trace_level = level;
    ++ControlBlock()->level_updates;
    LogUnlock();
  }

  std::string pid_field_;
  size_t start_ = 0;
};

#endif  // TESTS_SUPPORT_LOGTRACE_H_
