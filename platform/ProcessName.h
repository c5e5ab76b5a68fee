// The short command name of the own process, as the system's process table shows it.

#ifndef PLATFORM_PROCESSNAME_H_
#define PLATFORM_PROCESSNAME_H_

#include <cstddef>

// Copies the name into `dest`, cut to `size` - 1 bytes. The system itself keeps only the first 15
// (Linux) or 16 (macOS) bytes of it. Returns false, with `dest` untouched, when it cannot be had.
// Any thread; the name is the process's, not the thread's.
bool GetOwnProcessName(char* dest, size_t size);

#endif  // PLATFORM_PROCESSNAME_H_
