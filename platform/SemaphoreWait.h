// Waiting for a System V semaphore, but not for ever.

#ifndef PLATFORM_SEMAPHOREWAIT_H_
#define PLATFORM_SEMAPHOREWAIT_H_

#include <chrono>

// Counts the first semaphore of `set` down by one, waiting at most `limit` until that is possible;
// with a limit of 0 it does not wait. The system counts it up again when the process ends. Returns
// false, with errno as semop sets it, when it cannot: EAGAIN when the limit has passed, EINTR when
// a signal came. Any thread.
bool TakeSemaphore(int set, std::chrono::milliseconds limit);

#endif  // PLATFORM_SEMAPHOREWAIT_H_
