#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/SharedMemoryObject.h"

int OpenSharedMemory(const std::string& name) {
  // Tried again when the object comes or goes in between.
  for (int attempt = 0; attempt < 3; ++attempt) {
    int descriptor = shm_open(name.c_str(), O_RDWR, 0);
    if (descriptor < 0 && errno == ENOENT) {
      // The mode of an object cannot be changed later here, so the umask must not narrow it.
      const mode_t mask = umask(0);
      descriptor = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, 0666);
      const int error = errno;
      umask(mask);
      if (descriptor < 0 && error == EEXIST) continue;
    }
    return descriptor;
  }
  return -1;
}

bool SizeSharedMemory(int descriptor, size_t size) {
  // EINVAL: an existing object cannot be resized here.
  return ftruncate(descriptor, static_cast<off_t>(size)) == 0 || errno == EINVAL;
}
