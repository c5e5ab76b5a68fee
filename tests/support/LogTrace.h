// What this process writes to the log while the object lives, at every level.

#ifndef TESTS_SUPPORT_LOGTRACE_H_
#define TESTS_SUPPORT_LOGTRACE_H_

#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#include "tests/support/LogRecords.h"
#include "tests/support/TempDir.h"

// Joins the log and raises its level to 5, which all processes share, for as long as it lives.
// Tests that use it take the lock "kxlog" and link kxlog.
class LogTrace {
 public:
  LogTrace() {
    if (!KXLogInitialize()) throw std::runtime_error("cannot join the log");
    SetLevel(5);
    Take();
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
    std::vector<std::string> records;
    for (const LogRecord& record : ReadLog(ControlBlock()->path, start_)) {
      if (record.process != getpid()) continue;
      const std::string tag = record.tag.empty() ? "" : "'" + record.tag + "' ";
      records.push_back(std::to_string(record.level) + " " + tag + record.message);
    }
    std::error_code none;
    start_ = std::filesystem::file_size(ControlBlock()->path, none);
    return records;
  }

 private:
  static void SetLevel(int level) {
    LogLock();
    ControlBlock()->trace_level = level;
    ++ControlBlock()->level_updates;
    LogUnlock();
  }

  size_t start_ = 0;
};

#endif  // TESTS_SUPPORT_LOGTRACE_H_
