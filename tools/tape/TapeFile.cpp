#include "tools/tape/TapeFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace tape {

namespace {

constexpr std::streamsize kLongest = 16 * 1024 * 1024;

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

bool WriteAll(int file, const std::string& text) {
  for (size_t done = 0; done < text.size();) {
    const ssize_t count = write(file, text.data() + done, text.size() - done);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) done += static_cast<size_t>(count);
  }
  return fsync(file) == 0;
}

}  // namespace

std::string WhyNotTo(const std::string& path) {
  struct stat info;
  if (lstat(path.c_str(), &info) == 0) {
    if (!S_ISREG(info.st_mode)) return path + " is not a plain file";
    if (info.st_uid != geteuid()) return path + " belongs to somebody else";
  } else if (errno != ENOENT) {
    return path + ": " + strerror(errno);
  }
  const std::string folder = FolderOf(path);
  return access(folder.c_str(), W_OK | X_OK) == 0 ? "" : folder + ": " + strerror(errno);
}

std::string WriteTape(const Tape& tape, const std::string& path) {
  if (const std::string problem = WhyNotTo(path); !problem.empty()) return problem;
  // A new file takes the place of what is there, so nothing is opened that others could put there.
  std::string next = path + ".XXXXXX";
  const int file = mkstemp(next.data());
  if (file < 0) return next + ": " + strerror(errno);
  const bool written = WriteAll(file, ToJson(tape));
  int error = written ? 0 : errno;
  close(file);
  if (error == 0 && rename(next.c_str(), path.c_str()) != 0) error = errno;
  if (error == 0) return "";
  unlink(next.c_str());
  return path + ": " + strerror(error);
}

Tape ReadTape(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text(static_cast<size_t>(kLongest), '\0');
  file.read(text.data(), kLongest);
  text.resize(static_cast<size_t>(file.gcount()));
  if (text.empty()) throw std::runtime_error(path + ": cannot be read, or is empty");
  if (file) throw std::runtime_error(path + ": is too long for a tape");
  try {
    return FromJson(text);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}

}  // namespace tape
