// The runs of the program that a log holds.

#ifndef TOOLS_LOG_RUNS_H_
#define TOOLS_LOG_RUNS_H_

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

#include "tools/log/Record.h"

namespace log_reader {

struct Run {
  pid_t process = 0;
  std::string user;
  bool whole = true;            // false: the log no longer holds its first record
  std::vector<Record> records;  // never empty; in the log's order
};

// Sorts a log's records by runs, in the order in which the runs began. Records of runs at the same
// time may be mixed, a process number may come again, and what other programs wrote is left out.
std::vector<Run> FindRuns(std::vector<Record> records);

// The run that a user means by `name`: "last", "last-1" for the one before it, and so on, or a
// process number ("4711" or "p4711"), of which the latest run counts. Null when there is none;
// `problem` then says so.
const Run* ChooseRun(const std::vector<Run>& runs, std::string_view name, std::string& problem);

}  // namespace log_reader

#endif  // TOOLS_LOG_RUNS_H_
