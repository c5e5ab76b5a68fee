#include "cef/chromium/base/Deadline.h"

#include <algorithm>
#include <cerrno>

namespace engine {
namespace {

using std::chrono::milliseconds;

// poll() counts in an int.
constexpr milliseconds kLongestPoll = std::chrono::hours(1);

}  // namespace

milliseconds TimeLeft(Clock::time_point end) {
  return std::max(std::chrono::ceil<milliseconds>(end - Clock::now()), milliseconds(0));
}

bool PollUntil(Clock::time_point end, pollfd* watched, nfds_t count) {
  for (;;) {
    const milliseconds left = std::min(TimeLeft(end), kLongestPoll);
    const int ready = poll(watched, count, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready < 0 ? errno != EINTR : TimeLeft(end).count() == 0) return false;
  }
}

bool WaitReadable(int fd, Clock::time_point end) {
  pollfd watched = {fd, POLLIN, 0};
  return PollUntil(end, &watched, 1);
}

bool WaitReadable(int fd, milliseconds limit) { return WaitReadable(fd, Clock::now() + limit); }

}  // namespace engine
