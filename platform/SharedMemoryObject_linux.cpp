#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/SharedMemoryObject.h"

namespace {

constexpr mode_t kModeForAll = 0666;

// Also fixes the mode of an object whose creator died halfway. Only its owner and root can. An
// object with further names may be somebody else's file, and is left alone.
void OpenToAll(int descriptor) {
  struct stat info;
  if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode) || info.st_nlink != 1) return;
  if ((info.st_mode & 07777) != kModeForAll) fchmod(descriptor, kModeForAll);
}

}  // namespace

int OpenSharedMemory(const std::string& name) {
  // An existing one is opened without O_CREAT: the system may refuse that for the files of others.
  // Tried again when it comes or goes in between.
  for (int attempt = 0; attempt < 3; ++attempt) {
    int descriptor = shm_open(name.c_str(), O_RDWR, 0);
    if (descriptor < 0 && errno == ENOENT) {
      descriptor = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, kModeForAll);
      if (descriptor < 0 && errno == EEXIST) continue;
    }
    if (descriptor >= 0) OpenToAll(descriptor);
    return descriptor;
  }
  return -1;
}

bool SizeSharedMemory(int descriptor, size_t size) {
  const auto length = static_cast<off_t>(size);
  // The second call takes the memory now: without, a full /dev/shm ends the process when it writes.
  return ftruncate(descriptor, length) == 0 && posix_fallocate(descriptor, 0, length) != ENOSPC;
}
