#include "libs/kxlog/kxLogService/BlockGuard.h"

#include <signal.h>
#include <sys/mman.h>

#include <cerrno>
#include <cstdint>

#include "libs/kxlog/kxLogService/LogState.h"

namespace {

struct sigaction s_Former;

// Every user may shrink the shared object, and whoever touches its mapping then gets the signal.
void OnBusError(int number, siginfo_t* info, void*) {
  const int error = errno;
  const auto block = reinterpret_cast<uintptr_t>(pShareMemory);
  const auto at = reinterpret_cast<uintptr_t>(info->si_addr);
  const bool replaced = block != 0 && at - block < sizeof(LogControlBlock) &&
                        mmap(pShareMemory, sizeof(LogControlBlock), PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
  // The access is tried again when this returns, so the former handler gets its signal.
  if (!replaced) sigaction(number, &s_Former, nullptr);
  errno = error;
}

}  // namespace

void GuardControlBlock() {
  struct sigaction now;
  if (sigaction(SIGBUS, nullptr, &now) != 0) return;
  if ((now.sa_flags & SA_SIGINFO) != 0 && now.sa_sigaction == OnBusError) return;
  s_Former = now;
  struct sigaction guard = {};
  guard.sa_sigaction = OnBusError;
  guard.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&guard.sa_mask);
  sigaction(SIGBUS, &guard, nullptr);
}
