// The number by which the system's own tools name a thread.

#ifndef PLATFORM_THREADID_H_
#define PLATFORM_THREADID_H_

#include <cstdint>

// The calling thread's number: its Mach port on macOS, its task id on Linux. Never fails.
uint32_t CurrentThreadId();

#endif  // PLATFORM_THREADID_H_
