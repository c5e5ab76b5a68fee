// Waiting with a limit.

#ifndef CEF_CHROMIUM_BASE_DEADLINE_H_
#define CEF_CHROMIUM_BASE_DEADLINE_H_

#include <poll.h>

#include <chrono>

namespace engine {

using Clock = std::chrono::steady_clock;

// How long it is until then, rounded up, so that a wait of that length never ends too early; zero
// when the time has come.
std::chrono::milliseconds TimeLeft(Clock::time_point end);

// Waits until one of the descriptors has what its `events` ask for, is at its end or has failed.
// False when the time has come first. Signal handlers that run meanwhile do not end the wait.
bool PollUntil(Clock::time_point end, pollfd* watched, nfds_t count);

// True once the descriptor is readable or at its end; false when the time has come first.
bool WaitReadable(int fd, Clock::time_point end);
bool WaitReadable(int fd, std::chrono::milliseconds limit);

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_DEADLINE_H_
