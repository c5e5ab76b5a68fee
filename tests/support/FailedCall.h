// One call into the C library that fails in a process under test. FailedCall.cpp, preloaded, makes
// it fail and counts; the test sets and reads this block, which stands in a file that both map.

#ifndef TESTS_SUPPORT_FAILEDCALL_H_
#define TESTS_SUPPORT_FAILEDCALL_H_

#include <array>
#include <atomic>

// The functions that can fail, each with its variants (openat, fopen64, lstat, ...).
inline constexpr std::array kFallible = {
    "open",    "fopen",      "opendir", "dlopen",  "read",    "recv",     "write",       "writev",
    "send",    "close",      "poll",    "pipe",    "eventfd", "signalfd", "socket",      "connect",
    "fcntl",   "flock",      "stat",    "statvfs", "access",  "mkdir",    "mkdtemp",     "mkfifo",
    "symlink", "rename",     "unlink",  "chmod",   "size",    "getpwuid", "shm_open",    "mmap",
    "shmget",  "shmat",      "shmctl",  "semget",  "semctl",  "semop",    "posix_spawn", "fork",
    "execve",  "pidfd_open", "thread",  "waitpid", "malloc",
};

struct FailedCall {
  static constexpr char kVariable[] = "FAILED_CALL";  // names the block's file

  char program[32];   // the file name of the program that it is meant for
  unsigned function;  // index into kFallible
  bool of_libraries;  // of what other libraries call, rather than the program's own code
  long number;        // which call fails, from 1; 0: none
  // So far, since main() was entered, in all processes that were forked: by the program's own code,
  // by other libraries.
  std::array<std::array<std::atomic<long>, 2>, kFallible.size()> calls;
  std::atomic<bool> failed;  // `number` has been reached
  char where[256];           // then: what was called
};

#endif  // TESTS_SUPPORT_FAILEDCALL_H_
