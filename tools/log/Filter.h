// Which records are shown.

#ifndef TOOLS_LOG_FILTER_H_
#define TOOLS_LOG_FILTER_H_

#include <sys/types.h>

#include <ctime>
#include <string>

#include "tools/log/Record.h"

namespace log_reader {

// An empty or zero member lets every record through.
struct Filter {
  pid_t process = 0;
  std::string user;
  std::string program;
  std::string module;  // the process's name for itself, or the tag
  std::string text;    // anywhere in the message
  std::string since;   // as ReadTime returns them
  std::string until;
  int level = 5;

  bool Lets(const Record& record) const;
};

// Brings a time into the form of a record's, or the beginning of one: "2026/11/21",
// "2026/11/21 21:55", with seconds and milliseconds too, "-" in place of "/"; "21:55", which is
// today; "5 min", "30 s", "2 h" or "1 d", which is before `now`; "now". Empty when it is none of
// these. Local time, as in the log.
std::string ReadTime(std::string text, time_t now);

}  // namespace log_reader

#endif  // TOOLS_LOG_FILTER_H_
