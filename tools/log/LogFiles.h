// The log as its readers see it: the file, the one before it, and those that come.

#ifndef TOOLS_LOG_LOGFILES_H_
#define TOOLS_LOG_LOGFILES_H_

#include <sys/types.h>

#include <functional>
#include <string>

#include "tools/log/Record.h"

namespace log_reader {

// Where the client's programs write: the file that the machine's control block names, or else the
// user's, or else the installation's.
std::string FindLog();

// Reads one log from its beginning, in the order in which it was written, over its rotations. A
// rotated file is read to its end, through the descriptor that is still open, so that nothing is
// lost as long as there is no more than one rotation and a half between two reads. For one thread.
class LogFiles {
 public:
  using Sink = std::function<void(const Record&)>;

  // The rotated file has the same name with ".old" behind it.
  explicit LogFiles(std::string path) : path_(std::move(path)) {}
  ~LogFiles();
  LogFiles(const LogFiles&) = delete;
  LogFiles& operator=(const LogFiles&) = delete;

  // Passes what has been written since the last call. Returns an empty text, or what is wrong: the
  // file is not there, or cannot be read.
  std::string Read(const Sink& sink);

  // How many pieces of the log were no whole records.
  size_t faults() const { return records_.faults(); }

 private:
  // A file that may be read; or -1, with errno, and `problem` saying why not.
  int Open(const std::string& path, std::string& problem) const;
  // Everything that the open file holds further on.
  std::string Drain(const Sink& sink);
  // Makes another file the open one.
  void Take(int descriptor);

  const std::string path_;
  int file_ = -1;
  int before_ = -1;  // kept open, so that no other file gets its number
  off_t offset_ = 0;
  Records records_;
};

}  // namespace log_reader

#endif  // TOOLS_LOG_LOGFILES_H_
