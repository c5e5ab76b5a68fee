// This check stays in release builds.
#undef NDEBUG

#include <sys/sysctl.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/ProcessName.h"

namespace {

constexpr size_t kNameBytes = 256;

bool getexename(pid_t pid, char (&name)[kNameBytes]) {
  int query[4] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, pid};
  kinfo_proc* procList = nullptr;
  size_t bytes = 0;
  while (true) {
    assert(procList == NULL);
    if (sysctl(query, 4, nullptr, &bytes, nullptr, 0) != 0) return false;
    procList = static_cast<kinfo_proc*>(malloc(bytes));
    if (procList == nullptr) return false;
    if (sysctl(query, 4, procList, &bytes, nullptr, 0) == 0) break;
    const int error = errno;
    free(procList);
    procList = nullptr;
    // The table has grown between the two calls: ask for its size again.
    if (error != ENOMEM) return false;
  }

  bool found = false;
  for (size_t i = 0; i < bytes / sizeof(kinfo_proc) && !found; ++i) {
    if (procList[i].kp_proc.p_pid != pid) continue;
    strlcpy(name, procList[i].kp_proc.p_comm, sizeof(name));
    found = true;
  }
  free(procList);
  return found;
}

}  // namespace

bool GetOwnProcessName(char* dest, size_t size) {
  char name[kNameBytes];
  if (!getexename(getpid(), name)) return false;
  strlcpy(dest, name, size);
  return true;
}
