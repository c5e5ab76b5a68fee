// What Chromium prints: read all the time, its end kept, and written to a log file of bounded size.
// Pages can make Chromium print as much as they like.

#ifndef CEF_CHROMIUM_PROCESS_CHROMIUMOUTPUT_H_
#define CEF_CHROMIUM_PROCESS_CHROMIUMOUTPUT_H_

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace engine {

// Reads on its own thread for as long as it lives, so that Chromium never waits for a reader.
// Any thread may ask.
class ChromiumOutput {
 public:
  // `log_file`, if not empty, is appended to: made with mode 0600, or given that mode; emptied
  // first when it has grown over a megabyte. A run adds half a megabyte at most, what comes then is
  // left out. A file that cannot be written, is not ours alone or no plain file counts as none.
  // Null and a reason in *err on failure.
  static std::unique_ptr<ChromiumOutput> Start(const std::string& log_file, std::string* err);

  // Joins the thread.
  ~ChromiumOutput();
  ChromiumOutput(const ChromiumOutput&) = delete;
  ChromiumOutput& operator=(const ChromiumOutput&) = delete;

  // For Chromium to write to; CloseWriter() when it has its copy.
  int writer() const { return writer_fd_; }
  void CloseWriter();

  // Adds a line of our own to the log file.
  void Note(const std::string& line);

  // Of the last 16 KiB that were printed: the last line that is not empty; the last one in which a
  // Chromium that ran says why it had to end; "" if there is none.
  std::string LastLine();
  std::string LastWords();

  // Whether Chromium has said that it cannot use its sandbox here, or that a policy forbids others
  // to drive it.
  bool TellsOfNoSandbox();
  bool TellsOfPolicy();

 private:
  ChromiumOutput() = default;
  void OpenLog(const std::string& path);
  void Read();
  bool ReadPiece();
  void WriteLog(const char* bytes, size_t size);
  std::string Tail();

  int reader_fd_ = -1;
  int writer_fd_ = -1;
  int stop_fd_ = -1;  // eventfd that ends the thread
  std::mutex mutex_;
  std::string tail_;     // guarded by mutex_
  int log_fd_ = -1;      // written to under mutex_
  size_t log_room_ = 0;  // guarded by mutex_
  std::thread thread_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_CHROMIUMOUTPUT_H_
