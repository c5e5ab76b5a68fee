#include "cef/chromium/process/PrivateFolder.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr size_t kRandomLetters = 6;

// The process id in a name `base`-<process id>-XXXXXX; 0 for any other name.
pid_t OwnerInName(const std::string& name, const std::string& base) {
  const size_t begin = base.size() + 1;
  if (name.compare(0, begin, base + "-") != 0) return 0;
  const size_t end = name.find_first_not_of("0123456789", begin);
  if (end == begin || end == std::string::npos || end - begin > 9 || name[end] != '-' ||
      name.size() - end - 1 != kRandomLetters) {
    return 0;
  }
  return static_cast<pid_t>(std::strtol(name.c_str() + begin, nullptr, 10));
}

// With EPERM it lives, as somebody else's.
bool IsDead(pid_t process) { return kill(process, 0) != 0 && errno == ESRCH; }

bool IsOwnFolder(const std::string& path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid();
}

}  // namespace

std::string TemporaryFolder() {
  const char* wanted = getenv("TMPDIR");
  struct stat info;
  // One that is not ours to write to is the variable of another user, who has become this one.
  if (!wanted || wanted[0] != '/' || stat(wanted, &info) != 0 || !S_ISDIR(info.st_mode) ||
      access(wanted, W_OK | X_OK) != 0) {
    return "/tmp";
  }
  std::string folder = wanted;
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

std::string MakePrivateFolder(const std::string& stem, int* lock_fd) {
  std::string path = stem + "-" + std::to_string(getpid()) + "-" + std::string(kRandomLetters, 'X');
  if (!mkdtemp(path.data())) return {};
  if (lock_fd) {
    bool busy = false;
    *lock_fd = LockFolder(path, &busy);
  }
  return path;
}

void SweepPrivateFolders(const std::string& stem) {
  const fs::path parent = fs::path(stem).parent_path();
  const std::string base = fs::path(stem).filename();
  std::vector<std::string> dead;
  std::error_code error;
  for (fs::directory_iterator it(parent, error), end; !error && it != end; it.increment(error)) {
    const pid_t owner = OwnerInName(it->path().filename(), base);
    if (owner > 0 && IsDead(owner) && IsOwnFolder(it->path())) dead.push_back(it->path());
  }
  for (const std::string& folder : dead) {
    // Where process ids of other containers mean nothing here, the lock still tells.
    bool busy = false;
    const int lock = LockFolder(folder, &busy);
    if (busy) continue;
    RemoveTree(folder);
    if (lock >= 0) close(lock);
  }
}

int LockFolder(const std::string& dir, bool* busy) {
  *busy = false;
  const int fd = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return -1;
  if (flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    *busy = true;
    close(fd);
    return -1;
  }
  return fd;
}

bool RemoveTree(const std::string& path) {
  std::error_code error;
  // It stops at the first file that it cannot remove, so a second try gets the others, and what a
  // process that is just ending has added.
  for (int i = 0; i < 2; ++i) {
    fs::remove_all(path, error);
    if (!error) return true;
  }
  return false;
}

}  // namespace engine
