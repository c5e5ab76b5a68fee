#include "libs/kxlog/kxLogService/Mac/kxMacLogAPIInternal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/LogFields.h"
#include "libs/kxlog/kxLogService/LogState.h"
#include "platform/SemaphoreWait.h"

const char* const LogGlobalShareLockName = InstallPaths::kLogFolder;
char s_LogSessionShareLockName[1024] = "";
int32_t semid = 0;

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How long a process waits in all for a holder of the lock that does not go on, and how long for
// each record after that: a stopped process must not stop everybody else's work.
constexpr milliseconds kPatience(2000);
constexpr milliseconds kPatienceAfterwards(1);

// When the process began to wait for the lock; 0 when it has had it since.
std::atomic<steady_clock::rep> s_WaitingSince{0};

// The kernel's semaphore says nothing of memory to the language; by this, what a thread did before
// it released the lock is there for the next one.
std::atomic<uint32_t> s_Turns{0};

// Threads that join the log anew set it while others take the lock.
int32_t Set() { return __atomic_load_n(&semid, __ATOMIC_RELAXED); }
void UseSet(int32_t id) { __atomic_store_n(&semid, id, __ATOMIC_RELAXED); }

milliseconds PatienceLeft() {
  const steady_clock::duration now = steady_clock::now().time_since_epoch();
  steady_clock::rep since = 0;
  if (s_WaitingSince.compare_exchange_strong(since, now.count())) since = now.count();
  const auto waited = std::chrono::duration_cast<milliseconds>(now - steady_clock::duration(since));
  return std::max(kPatience - waited, kPatienceAfterwards);
}

int Operate(short change, short flags) {
  sembuf operation = {};
  operation.sem_op = change;
  operation.sem_flg = flags;
  return semop(Set(), &operation, 1);
}

// Linux gives the id 0, which here means no lock, to the first set after a start of the system. A
// set that nobody else knows takes that id while the lock is created.
int CreateSet(key_t key) {
  const int placeholder = semget(IPC_PRIVATE, 1, 0600);
  const int id = semget(key, 1, IPC_CREAT | IPC_EXCL | 0666);
  const int error = errno;
  if (placeholder >= 0) semctl(placeholder, 0, IPC_RMID);
  errno = error;
  return id;
}

// Whether the maker of a set has not set it free, and had the time to.
bool IsHalfMade(int id) {
  constexpr time_t kTimeToSetFree = 2;  // seconds
  semid_ds info = {};
  union {
    int value;
    semid_ds* buffer;
  } argument;
  argument.buffer = &info;
  return semctl(id, 0, IPC_STAT, argument) == 0 && info.sem_otime == 0 &&
         time(nullptr) - info.sem_ctime >= kTimeToSetFree;
}

// A maker that is killed in between leaves a lock that nobody would ever get. One process at a time
// mends it.
void MendHalfMadeLock(const char* path) {
  if (!IsHalfMade(Set())) return;
  const int folder = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  if (flock(folder, LOCK_EX | LOCK_NB) == 0 && IsHalfMade(Set())) Operate(1, 0);
  close(folder);
}

}  // namespace

void GetLogSessionShareLockName() {
  if (s_LogSessionShareLockName[0] != '\0') return;
  const std::string path = std::string(GetUserHome()) + kLogFolderUnderHome;
  snprintf(s_LogSessionShareLockName, sizeof(s_LogSessionShareLockName), "%s", path.c_str());
}

bool LogLockInit(const char* path) {
  const key_t key = ftok(path, kLogLockProject);
  if (key == -1) return false;
  int id = semget(key, 0, 0);
  if (id < 0) {
    id = CreateSet(key);
    if (id >= 0) {
      UseSet(id);
      return Operate(1, 0) == 0;
    }
    if (errno != EEXIST) return false;
    id = semget(key, 0, 0);
    if (id < 0) return false;
  }
  UseSet(id);
  MendHalfMadeLock(path);
  return true;
}

bool LogLock() {
  const int32_t set = Set();
  if (set == 0) return true;
  // A wait that a signal interrupts is not taken up again. Kept on purpose.
  const bool taken = TakeSemaphore(set, milliseconds(0)) ||
                     (errno == EAGAIN && TakeSemaphore(set, PatienceLeft()));
  if (!taken) return false;
  s_Turns.load(std::memory_order_acquire);
  s_WaitingSince = 0;
  return true;
}

int LogUnlock() {
  if (Set() == 0) return 1;
  s_Turns.fetch_add(1, std::memory_order_release);
  return Operate(1, SEM_UNDO);
}

int LogLockClose() { return 1; }

int LogIsInitialized() {
  return static_cast<int>(__atomic_load_n(&bLogInitialized, __ATOMIC_ACQUIRE));
}
