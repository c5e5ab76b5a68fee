// One record of the client's log, taken apart.

#ifndef TOOLS_LOG_RECORD_H_
#define TOOLS_LOG_RECORD_H_

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace log_reader {

struct Record {
  std::string text;  // all of it, without its length and its line end; any bytes
  std::string time;  // "2026/11/21 21:55:02.417", local time of its writer
  int level = 0;     // 1 error … 5 finest detail
  std::string user;
  std::string program;  // as the system's process table has it
  std::string module;   // as the process names itself
  pid_t process = 0;
  std::string thread;   // hexadecimal
  std::string place;    // source file and line, "CefBrowserClient:149"
  std::string tag;      // of the module; empty without one
  std::string message;  // any bytes
  bool cut = false;     // it was too long for its writer
};

// Splits a log into its records by their own lengths. Bytes come in pieces of any size. What is no
// record, because somebody else has written into the file, is passed over up to the next line end.
class Records {
 public:
  // Takes in the next bytes of the file and returns the records that are complete with them.
  std::vector<Record> Feed(std::string_view bytes);

  // True when what has come so far ends within a record, or ends in bytes that are none.
  bool InRecord() const { return !rest_.empty(); }

  // How many pieces were no record, or not all of one.
  size_t faults() const { return faults_; }

  // Forgets an unfinished record, as its file has ended.
  void Restart() { rest_.clear(); }

 private:
  std::string rest_;
  size_t faults_ = 0;
};

}  // namespace log_reader

#endif  // TOOLS_LOG_RECORD_H_
