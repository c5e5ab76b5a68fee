// Reading the log that all processes of the product share.

#ifndef TESTS_SUPPORT_LOGRECORDS_H_
#define TESTS_SUPPORT_LOGRECORDS_H_

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

struct LogRecord {
  pid_t process = 0;
  std::string text;  // the record without its length and its line end
};

// The records of a log file from byte `begin` on (from 0 if the file has become shorter than that).
// A record that a process is still writing ends the list. When a record is not whole (its length
// and its line end do not agree, or something stands between two records), `fault`, if given, tells
// where and the list ends before it; otherwise it becomes empty.
std::vector<LogRecord> ReadLog(const std::string& path, size_t begin, std::string* fault = nullptr);

#endif  // TESTS_SUPPORT_LOGRECORDS_H_
