#include "tools/starter/CallerWatch.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace ebStarter {

using Clock = std::chrono::steady_clock;

CallerWatch::CallerWatch(pid_t helper, int error_output, std::chrono::milliseconds grace) {
  const int descriptors_end = DescriptorsEnd();
  process_ = fork();
  if (process_ == 0) {
    // Out of reach of what ends the caller's process group; and while this member of the helper's
    // group lives, the helper's number is given to no other process.
    setpgid(0, helper);
    CloseDescriptors(0, descriptors_end, alive_.reader(), error_output);
    Watch(helper, error_output, grace);
  }
  alive_.CloseReader();
}

CallerWatch::~CallerWatch() {
  if (process_ < 0) return;
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
}

// In a copy of a process that may have had threads: only calls that are allowed in signal handlers.
void CallerWatch::Watch(pid_t helper, int error_output, std::chrono::milliseconds grace) const {
  char bytes[512];
  // Nothing but its end, for which a read that failed could be taken.
  pollfd caller = {alive_.reader(), POLLIN, 0};
  while (poll(&caller, 1, -1) <= 0) continue;
  kill(helper, SIGTERM);
  const Clock::time_point end = Clock::now() + grace;
  pollfd watched = {error_output, POLLIN, 0};
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    if (left.count() <= 0) break;
    if (poll(&watched, 1, static_cast<int>(left.count())) <= 0) continue;
    // Its end, and that of whatever it started.
    if (read(error_output, bytes, sizeof bytes) == 0) _exit(0);
  }
  kill(helper, SIGKILL);
  _exit(0);
}

}  // namespace ebStarter
