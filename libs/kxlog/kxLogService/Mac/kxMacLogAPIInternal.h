// The lock that all writers of one log share: a System V semaphore that belongs to the log folder.
// A process that dies while holding it gives it back, whatever killed it.

#ifndef LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGAPIINTERNAL_H_
#define LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGAPIINTERNAL_H_

#include <cstdint>

// The user's own log folder, below the home folder.
inline constexpr char kLogFolderUnderHome[] = "/Library/Logs/Corvane Secure/Logging";

// With its folder it makes the key of a lock.
inline constexpr int kLogLockProject = 1;

// The folder that the machine-wide lock belongs to.
extern const char* const LogGlobalShareLockName;

// The folder that the user's own lock belongs to; empty until GetLogSessionShareLockName is called.
extern char s_LogSessionShareLockName[1024];
void GetLogSessionShareLockName();

// The semaphore set; 0: no lock, all lock calls then succeed without doing anything.
extern int32_t semid;

// Opens the lock that belongs to the folder `path`, creating it when there is none yet, and setting
// it free when its maker died before it could. The folder must exist.
bool LogLockInit(const char* path);

// Waits for the lock. It is not recursive: a thread that holds it must not ask again. Fails when a
// signal interrupts the wait, and when the lock does not come free within 2 seconds; until the
// process has had it again, every further wait then ends after a millisecond.
bool LogLock();

// Releases the lock. Mind the result: 1 without a lock, otherwise 0 on success and -1 on failure.
int LogUnlock();

// Does nothing and returns 1: the semaphore outlives all processes.
int LogLockClose();

// Whether the process has joined the log.
int LogIsInitialized();

#endif  // LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGAPIINTERNAL_H_
