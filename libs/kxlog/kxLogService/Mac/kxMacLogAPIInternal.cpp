#include "libs/kxlog/kxLogService/Mac/kxMacLogAPIInternal.h"

#include <sys/ipc.h>
#include <sys/sem.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

const char* const LogGlobalShareLockName = InstallPaths::kLogFolder;
char s_LogSessionShareLockName[1024] = "";
int32_t semid = 0;

namespace {

int Operate(short change, short flags) {
  sembuf operation = {};
  operation.sem_op = change;
  operation.sem_flg = flags;
  return semop(semid, &operation, 1);
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

}  // namespace

void GetLogSessionShareLockName() {
  if (s_LogSessionShareLockName[0] != '\0') return;
  const std::string path = std::string(GetUserHome()) + kLogFolderUnderHome;
  snprintf(s_LogSessionShareLockName, sizeof(s_LogSessionShareLockName), "%s", path.c_str());
}

bool LogLockInit(const char* path) {
  const key_t key = ftok(path, 1);
  if (key == -1) return false;
  int id = semget(key, 0, 0);
  if (id < 0) {
    id = CreateSet(key);
    if (id >= 0) {
      semid = id;
      return Operate(1, 0) == 0;
    }
    if (errno != EEXIST) return false;
    id = semget(key, 0, 0);
    if (id < 0) return false;
  }
  semid = id;
  return true;
}

bool LogLock() {
  if (semid == 0) return true;
  int result;
  // Compares the result, which is -1, and not errno: an interrupted wait fails. Kept on purpose.
  do {
    result = Operate(-1, SEM_UNDO);
  } while (result == EINTR && LogIsInitialized());
  return result == 0;
}

int LogUnlock() {
  if (semid == 0) return 1;
  return Operate(1, SEM_UNDO);
}

int LogLockClose() { return 1; }

int LogIsInitialized() { return static_cast<int>(bLogInitialized); }
