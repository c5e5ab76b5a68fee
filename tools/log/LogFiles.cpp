#include "tools/log/LogFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "libs/kxaccess/InstallPaths.h"
#include "tools/log/ControlBlock.h"

namespace log_reader {

namespace {

bool SameFile(int one, int other) {
  struct stat a, b;
  return one >= 0 && other >= 0 && fstat(one, &a) == 0 && fstat(other, &b) == 0 &&
         a.st_ino == b.st_ino && a.st_dev == b.st_dev;
}

}  // namespace

std::string FindLog() {
  std::string path = LogPathInControlBlock();
  return path.empty() ? InstallPaths::kLogFile : path;
}

LogFiles::~LogFiles() {
  if (file_ >= 0) close(file_);
  if (before_ >= 0) close(before_);
}

void LogFiles::Take(int descriptor) {
  if (before_ >= 0) close(before_);
  before_ = file_;
  file_ = descriptor;
  offset_ = 0;
  records_.Restart();
}

int LogFiles::Open(const std::string& path, std::string& problem) const {
  // Everybody may put something in the log's place: a pipe, say, that never ends.
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  struct stat info;
  if (file < 0) {
    problem = path + ": " + strerror(errno);
    return -1;
  }
  if (fstat(file, &info) == 0 && S_ISREG(info.st_mode)) return file;
  close(file);
  problem = path + " is not a file";
  errno = EINVAL;
  return -1;
}

std::string LogFiles::Drain(const Sink& sink) {
  static char bytes[64 * 1024];
  for (;;) {
    const ssize_t count = pread(file_, bytes, sizeof bytes, offset_);
    if (count == 0) return "";
    if (count < 0) return path_ + ": " + strerror(errno);
    offset_ += count;
    for (const Record& record : records_.Feed({bytes, static_cast<size_t>(count)})) sink(record);
  }
}

std::string LogFiles::Read(const Sink& sink) {
  std::string problem;
  // The newer one first: if the log is rotated in between, both are the same.
  const int next = Open(path_, problem);
  if (next < 0 && errno != ENOENT) return problem;
  if (SameFile(next, file_)) {
    close(next);
    struct stat info;
    if (fstat(file_, &info) == 0 && info.st_size < offset_) {
      offset_ = 0;
      records_.Restart();
    }
    return Drain(sink);
  }
  std::string error;
  if (file_ >= 0) error = Drain(sink);
  std::string no_older;
  const int older = Open(path_ + ".old", no_older);
  if (older < 0 && errno != ENOENT) error = no_older;
  if (older >= 0 && !SameFile(older, next) && !SameFile(older, file_) &&
      !SameFile(older, before_)) {
    Take(older);
    error = Drain(sink);
  } else if (older >= 0) {
    close(older);
  }
  if (next >= 0) {
    Take(next);
    error += Drain(sink);
  }
  return file_ >= 0 ? error : problem;
}

}  // namespace log_reader
