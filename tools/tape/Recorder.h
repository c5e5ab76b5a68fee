// Notes what the hooks of a program are given while it runs, from the log.

#ifndef TOOLS_TAPE_RECORDER_H_
#define TOOLS_TAPE_RECORDER_H_

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tools/log/LogFiles.h"
#include "tools/tape/LevelKeeper.h"

namespace tape {

// Keeps the log at its finest level while it lives, and reads it in a thread of its own, so that
// rotations lose nothing. To be made while the process has one thread; for that thread.
class Recorder {
 public:
  // Throws std::runtime_error saying why nothing can be recorded.
  Recorder();
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // Ends the recording, once the program has ended, and puts the level back. What has gone wrong is
  // appended to `problem`.
  std::vector<log_reader::Record> Finish(std::string& problem);

  std::chrono::system_clock::time_point begin() const { return begin_; }

 private:
  void Read();
  void Follow();

  LevelKeeper level_;
  const std::chrono::system_clock::time_point begin_;
  log_reader::LogFiles log_;
  std::vector<log_reader::Record> records_;
  std::string problem_;  // of the last look at the log
  bool full_ = false;
  std::atomic<bool> ending_{false};
  std::thread thread_;
};

}  // namespace tape

#endif  // TOOLS_TAPE_RECORDER_H_
