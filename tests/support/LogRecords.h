// Reading the log that all processes of the product share.

#ifndef TESTS_SUPPORT_LOGRECORDS_H_
#define TESTS_SUPPORT_LOGRECORDS_H_

#include <string>
#include <vector>

#include "tests/support/TempDir.h"
#include "tools/log/Record.h"

using LogRecord = log_reader::Record;

// The records of a log file from byte `begin` on (from 0 if the file has become shorter than that).
// A record that a process is still writing ends the list. `fault`, if given, tells when a record is
// not whole, or something stands between two; otherwise it becomes empty.
inline std::vector<LogRecord> ReadLog(const std::string& path, size_t begin,
                                      std::string* fault = nullptr) {
  const std::string all = ReadFile(path);
  log_reader::Records records;
  std::vector<LogRecord> read = records.Feed(begin <= all.size() ? all.substr(begin) : all);
  const std::string faults = std::to_string(records.faults());
  if (fault) *fault = records.faults() == 0 ? "" : faults + " pieces are no whole records";
  return read;
}

#endif  // TESTS_SUPPORT_LOGRECORDS_H_
