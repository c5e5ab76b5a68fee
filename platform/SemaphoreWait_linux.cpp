#include <sched.h>
#include <sys/ipc.h>
#include <sys/sem.h>

#include <cerrno>
#include <ctime>

#include "platform/SemaphoreWait.h"

namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

// Whoever waits in the system's queue is given the semaphore while still asleep, and until it has
// been woken nobody gets on. So a wait begins outside the queue: first giving way to others, then
// asleep. Neither lasts long, since only the queue is fair.
constexpr microseconds kGivesWayFor(100);
constexpr microseconds kPauses[] = {microseconds(100), microseconds(200)};

timespec TimeSpec(nanoseconds time) {
  return {static_cast<time_t>(time.count() / 1000000000),
          static_cast<long>(time.count() % 1000000000)};
}

bool TakeAtOnce(int set) {
  sembuf take = {0, -1, SEM_UNDO | IPC_NOWAIT};
  return semop(set, &take, 1) == 0;
}

bool TakeInTurn(int set, nanoseconds limit) {
  if (limit <= nanoseconds(0)) return TakeAtOnce(set);
  sembuf take = {0, -1, SEM_UNDO};
  const timespec time = TimeSpec(limit);
  return semtimedop(set, &take, 1, &time) == 0;
}

}  // namespace

bool TakeSemaphore(int set, std::chrono::milliseconds limit) {
  if (TakeAtOnce(set)) return true;
  if (errno != EAGAIN || limit.count() == 0) return false;
  const auto begin = steady_clock::now();
  while (steady_clock::now() - begin < kGivesWayFor) {
    sched_yield();
    if (TakeAtOnce(set)) return true;
    if (errno != EAGAIN) return false;
  }
  for (const microseconds pause : kPauses) {
    const timespec time = TimeSpec(pause);
    if (nanosleep(&time, nullptr) != 0) return false;
    if (TakeAtOnce(set)) return true;
    if (errno != EAGAIN) return false;
  }
  return TakeInTurn(set, limit - (steady_clock::now() - begin));
}
