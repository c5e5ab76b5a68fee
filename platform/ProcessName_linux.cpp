#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "platform/ProcessName.h"

bool GetOwnProcessName(char* dest, size_t size) {
  const int fd = open("/proc/self/comm", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  char name[64];
  const ssize_t got = read(fd, name, sizeof(name));
  close(fd);
  // The kernel ends the name with a newline; the name itself may hold one.
  if (got < 1) return false;
  snprintf(dest, size, "%.*s", static_cast<int>(got - 1), name);
  return true;
}
