#include <sys/ipc.h>
#include <sys/sem.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "platform/SemaphoreWait.h"

// The system has no wait with a limit, so this asks again, less and less often.
bool TakeSemaphore(int set, std::chrono::milliseconds limit) {
  using std::chrono::milliseconds;
  using std::chrono::steady_clock;
  constexpr milliseconds kLongestPause(16);
  const auto end = steady_clock::now() + limit;
  for (milliseconds pause(1);; pause = std::min(pause * 2, kLongestPause)) {
    sembuf take = {0, -1, SEM_UNDO | IPC_NOWAIT};
    if (semop(set, &take, 1) == 0) return true;
    if (errno != EAGAIN || steady_clock::now() >= end) return false;
    const timespec time = {0, static_cast<long>(pause.count()) * 1000000};
    if (nanosleep(&time, nullptr) != 0) return false;
  }
}
