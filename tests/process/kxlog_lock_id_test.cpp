// The lock on a system that has made no semaphore yet: the kernel's first id is 0, which the
// library takes for "no lock".

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/LogArea.h"

namespace {

constexpr int kNoNamespace = 77;

int LockInAFreshSystem(const char* folder) {
  alarm(20);
  if (unshare(CLONE_NEWIPC) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWIPC) != 0) return kNoNamespace;
  if (!LogLockInit(folder) || semid == 0) return 1;
  const int first = semid;
  semid = 0;
  if (!LogLockInit(folder) || semid != first) return 2;
  if (!LogLock() || semctl(semid, 0, GETVAL) != 0) return 3;
  seminfo info = {};
  semctl(0, 0, SEM_INFO, reinterpret_cast<void*>(&info));
  return info.semusz == 1 ? 0 : 4;  // nothing but the lock is left
}

TEST(LogLockIdTest, FirstSemaphoreOfTheSystem) {
  TempDir folder;
  const pid_t child = fork();
  if (child == 0) _exit(LockInAFreshSystem(folder.path().c_str()));
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNoNamespace) GTEST_SKIP() << "no IPC namespace of its own";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
