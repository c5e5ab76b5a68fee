#include "libs/kxlog/kxLogService/Mac/kxMacLogserviceApiLib.h"

#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/BlockGuard.h"
#include "libs/kxlog/kxLogService/LogFields.h"
#include "libs/kxlog/kxLogService/LogState.h"
#include "libs/kxlog/kxLogService/Mac/kxMacLogAPIInternal.h"
#include "libs/kxlog/kxLogService/Mac/kxMacLogServiceFile.h"
#include "platform/SharedMemoryName.h"
#include "platform/SharedMemoryObject.h"

namespace {

constexpr char s_GlobalMmfName[] = "/Corvane Secure/debuglog.shm";
constexpr char s_SessionMmfName[] = "/Library/Users/debuglog.shm";
constexpr const char* s_GlobalShareLogName = InstallPaths::kLogFile;
char s_SessionShareLogName[1024] = "";

constexpr char kLogNameVariable[] = "VELD_LOG_NAME";
constexpr size_t kLogNameLimit = 1020;

// An attempt to join has failed and left the process with the log lock: nobody may wait for it
// here.
std::atomic<bool> s_LockKept{false};

// Finds the lock to share, the machine-wide one first.
bool OpenSession() {
  bUseGlobalSession = 1;
  if (CreateLogDirectory(LogGlobalShareLockName) && LogLockInit(LogGlobalShareLockName)) {
    return true;
  }
  bUseGlobalSession = 0;
  GetLogSessionShareLockName();
  return CreateLogDirectory(s_LogSessionShareLockName) && LogLockInit(s_LogSessionShareLockName);
}

LogControlBlock* MapControlBlock() {
  const int fd = OpenSharedMemory(ControlBlockName(bUseGlobalSession != 0));
  if (fd < 0) return nullptr;
  if (!SizeSharedMemory(fd, sizeof(LogControlBlock))) {
    close(fd);
    return nullptr;
  }
  void* block = mmap(nullptr, sizeof(LogControlBlock), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  close(fd);
  return block == MAP_FAILED ? nullptr : static_cast<LogControlBlock*>(block);
}

void InitialiseControlBlock(LogControlBlock* block) {
  const uint64_t size_and_magic = uint64_t{kLogControlMagic} << 32 | sizeof(LogControlBlock);
  memcpy(&block->size, &size_and_magic, sizeof(block->size) + sizeof(block->magic));
  block->path[0] = '\0';
  block->rotation_state = kLogNeverRotated;
  block->maximum_size = kLogMaximumSize;
  block->service_word = kLogServiceWord;
  const char* path = getenv(kLogNameVariable);
  if (path == nullptr || strlen(path) >= kLogNameLimit) {
    path = GetPrivShareLogName(bUseGlobalSession != 0);
  }
  RemovePlantedLink(path);
  // The block is taken for set up once its path begins with one: that character comes last, so that
  // a process that is killed here leaves no half of a block.
  if (path[0] != '\0') snprintf(block->path + 1, sizeof(block->path) - 1, "%s", path + 1);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  block->path[0] = path[0];
}

// A file that may not grow is a full one, no reason to end the process.
void SurviveFileSizeLimit() {
  struct sigaction now;
  if (sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) signal(SIGXFSZ, SIG_IGN);
}

// Records are put together without the lock, so a name that stands already is not written again.
void TakeUserName() {
  char name[sizeof(CurrentUserName)];
  size_t length = sizeof(name);
  if (!GetUserName(name, &length)) return;
  EscapeParameter(name, strlen(name));
  if (strcmp(name, CurrentUserName) != 0) memcpy(CurrentUserName, name, strlen(name) + 1);
}

// One thread at a time finds the session: halfway it is on the wrong one.
std::mutex s_Joining;

}  // namespace

const char* GetMmfName(bool global) { return global ? s_GlobalMmfName : s_SessionMmfName; }

std::string ControlBlockName(bool global) {
  return SharedMemoryName(GetMmfName(global), InstallPaths::kRoot,
                          global ? SharedAmong::kAllUsers : SharedAmong::kProcessesOfTheUser);
}

const char* GetPrivShareLogName(bool global) {
  if (global) return s_GlobalShareLogName;
  if (s_SessionShareLogName[0] == '\0') {
    const std::string path = std::string(GetUserHome()) + kLogFolderUnderHome + "/debuglog.log";
    snprintf(s_SessionShareLogName, sizeof(s_SessionShareLogName), "%s", path.c_str());
  }
  return s_SessionShareLogName;
}

// A failure after the lock was taken leaves it taken, on purpose: the system releases it when the
// process ends.
bool KXLogProcessAttachInit() {
  if (CurrentLogMode == kLogModeOff) return false;
  if (LogIsInitialized()) return true;
  const std::lock_guard<std::mutex> joining(s_Joining);
  if (s_LockKept) return false;
  GetCurrentProcessName();
  SurviveFileSizeLimit();
  if (!OpenSession() || !LogLock()) return false;
  if (LogIsInitialized()) {  // another thread was faster
    LogUnlock();
    return true;
  }

  LogControlBlock* block = MapControlBlock();
  if (block == nullptr) {
    s_LockKept = true;
    return false;
  }
  pShareMemory = block;
  GuardControlBlock();
  if (block->size == 0 || !NamesLogFile(*block)) InitialiseControlBlock(block);
  bIsShareMemoryReadWriteView = 1;
  TakeUserName();
  __atomic_store_n(&bLogInitialized, 1, __ATOMIC_RELEASE);
  LogUnlock();
  return true;
}

bool KXLogProcessDetachInit() {
  if (!LogIsInitialized()) return true;
  __atomic_store_n(&bLogInitialized, 0, __ATOMIC_RELEASE);
  munmap(pShareMemory, sizeof(LogControlBlock));
  pShareMemory = nullptr;
  LogLockClose();
  bIsShareMemoryPrivate = 0;
  bIsShareMemoryReadWriteView = 0;
  return true;
}
