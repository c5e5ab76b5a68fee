// What the helper writes on standard error: passed on, and its telling lines kept.

#ifndef TOOLS_STARTER_ERROROUTPUT_H_
#define TOOLS_STARTER_ERROROUTPUT_H_

#include <chrono>
#include <optional>
#include <string>
#include <thread>

#include "tools/starter/Pipe.h"

namespace ebStarter {

// The last lines of a stream of bytes.
class LastLines {
 public:
  void Take(const char* bytes, size_t size);
  // The stream has ended, perhaps within a line.
  void End();

  // The last line that is not empty, and the rest of the last ones that begin with "cef: " and say
  // that the browser failed, or what was on the screen; all cut at 1 KiB.
  const std::string& last() const { return last_; }
  const std::string& browser_failure() const { return browser_failure_; }
  const std::string& browser_remark() const { return browser_remark_; }

 private:
  std::string current_;
  std::string last_;
  std::string browser_failure_;
  std::string browser_remark_;
};

// A pipe for the helper to write to, and a thread that passes all of it on to this process's
// standard error, byte for byte. To be made with all signals blocked: the thread keeps them so, and
// a write to a reader that has gone is then an error instead of the process's end.
class ErrorOutput {
 public:
  // Throws std::runtime_error or std::system_error.
  ErrorOutput();
  ~ErrorOutput();

  int reader() const { return pipe_.reader(); }
  int writer() const { return pipe_.writer(); }
  // To be called when the helper has its copy.
  void CloseWriter() { pipe_.CloseWriter(); }

  // Takes what is there and ends the thread, at the latest after a second. Others may still hold
  // the pipe open; what they write later is lost. Call it once.
  const LastLines& Finish();

 private:
  void Run();
  bool Read();
  void PassOn(const char* bytes, size_t size);
  bool MayWrite();

  Pipe pipe_;
  Pipe finish_;
  LastLines lines_;
  // Where nobody can or will read any more.
  bool muted_ = false;
  std::optional<std::chrono::steady_clock::time_point> deadline_;
  std::thread thread_;
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_ERROROUTPUT_H_
