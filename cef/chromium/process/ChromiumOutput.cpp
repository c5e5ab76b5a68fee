#include "cef/chromium/process/ChromiumOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <sstream>

#include "cef/chromium/base/QuietThread.h"

namespace engine {

namespace {

constexpr size_t kTail = 16 << 10;
constexpr off_t kLongestLog = 1 << 20;
constexpr size_t kLogPerRun = 512 << 10;
constexpr char kLeftOut[] = "\n(too much: the rest of this run is left out)\n";

constexpr mode_t kOfOthers = S_IRWXG | S_IRWXO;

bool Holds(const std::string& text, std::initializer_list<const char*> marks) {
  return std::any_of(marks.begin(), marks.end(),
                     [&](const char* mark) { return text.find(mark) != std::string::npos; });
}

// Most of what a running Chromium prints is of no consequence.
bool TellsOfAnEnd(const std::string& line) {
  return Holds(line, {":FATAL:", "Received signal", "ut of memory", "terminate called"});
}

template <typename Predicate>
std::string LastLineIn(const std::string& text, const Predicate& matters) {
  std::istringstream lines(text);
  std::string last;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && matters(line)) last = line;
  }
  return last;
}

}  // namespace

std::unique_ptr<ChromiumOutput> ChromiumOutput::Start(const std::string& log_file,
                                                      std::string* err) {
  std::unique_ptr<ChromiumOutput> output(new ChromiumOutput);
  int ends[2];
  output->stop_fd_ = eventfd(0, EFD_CLOEXEC);
  if (output->stop_fd_ < 0 || pipe2(ends, O_CLOEXEC) != 0) {
    *err = std::string("no pipe for Chromium's output: ") + strerror(errno);
    return nullptr;
  }
  output->reader_fd_ = ends[0];
  output->writer_fd_ = ends[1];
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  if (!log_file.empty()) output->OpenLog(log_file);
  output->thread_ = StartQuietThread([raw = output.get()] { raw->Read(); });
  return output;
}

ChromiumOutput::~ChromiumOutput() {
  if (thread_.joinable()) {
    eventfd_write(stop_fd_, 1);
    thread_.join();
  }
  for (const int fd : {reader_fd_, writer_fd_, stop_fd_, log_fd_}) {
    if (fd >= 0) close(fd);
  }
}

void ChromiumOutput::CloseWriter() {
  if (writer_fd_ >= 0) close(writer_fd_);
  writer_fd_ = -1;
}

void ChromiumOutput::OpenLog(const std::string& path) {
  const int fd =
      open(path.c_str(),
           O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600);
  if (fd < 0) return;
  struct stat info;
  const bool ours = fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid() &&
                    info.st_nlink == 1;
  if (!ours || ((info.st_mode & kOfOthers) != 0 && fchmod(fd, 0600) != 0) ||
      (info.st_size > kLongestLog && ftruncate(fd, 0) != 0)) {
    close(fd);
    return;
  }
  log_fd_ = fd;
  log_room_ = kLogPerRun;
}

void ChromiumOutput::Read() {
  for (;;) {
    pollfd watched[] = {{reader_fd_, POLLIN, 0}, {stop_fd_, POLLIN, 0}};
    if (poll(watched, 2, -1) < 0 && errno != EINTR) return;
    const bool stopped = watched[1].revents != 0;
    std::lock_guard<std::mutex> lock(mutex_);
    // At its end the pipe stays readable.
    if ((watched[0].revents != 0 && !ReadPiece()) || stopped) return;
  }
}

// False when there is nothing more to read, now or ever. With mutex_ held.
bool ChromiumOutput::ReadPiece() {
  char piece[8192];
  const ssize_t count = read(reader_fd_, piece, sizeof piece);
  if (count <= 0) return count < 0 && errno == EINTR;
  WriteLog(piece, static_cast<size_t>(count));
  tail_.append(piece, static_cast<size_t>(count));
  // Cut at twice the length, so that not every piece moves the whole text.
  if (tail_.size() > 2 * kTail) tail_.erase(0, tail_.size() - kTail);
  return true;
}

// With mutex_ held.
void ChromiumOutput::WriteLog(const char* bytes, size_t size) {
  if (log_room_ == 0) return;
  const size_t taken = std::min(size, log_room_);
  log_room_ -= taken;
  // A full disk is no reason to say anything: it is a log.
  ssize_t written = write(log_fd_, bytes, taken);
  if (log_room_ == 0) written = write(log_fd_, kLeftOut, sizeof kLeftOut - 1);
  static_cast<void>(written);
}

void ChromiumOutput::Note(const std::string& line) {
  std::lock_guard<std::mutex> lock(mutex_);
  WriteLog((line + "\n").data(), line.size() + 1);
}

// With what Chromium printed a moment ago.
std::string ChromiumOutput::Tail() {
  std::lock_guard<std::mutex> lock(mutex_);
  // At most what a pipe holds.
  for (int i = 0; i < 8 && ReadPiece(); ++i) continue;
  return tail_;
}

std::string ChromiumOutput::LastLine() {
  return LastLineIn(Tail(), [](const std::string&) { return true; });
}

std::string ChromiumOutput::LastWords() { return LastLineIn(Tail(), TellsOfAnEnd); }

bool ChromiumOutput::TellsOfNoSandbox() {
  return Holds(Tail(),
               {"No usable sandbox", "SUID sandbox helper", "Failed to move to new namespace"});
}

bool ChromiumOutput::TellsOfPolicy() {
  return Holds(Tail(), {"remote debugging is disallowed by the system admin"});
}

}  // namespace engine
