// The state of this process's logging. Every other part of the library uses this one, and this one
// none of them.
//
// The name buffers and flags change only while joining or leaving the log; the rest changes under
// the log lock.

#ifndef LIBS_KXLOG_KXLOGSERVICE_LOGSTATE_H_
#define LIBS_KXLOG_KXLOGSERVICE_LOGSTATE_H_

#include <cstdint>

#include "libs/kxlog/kxLogService/LogControlBlock.h"

// Fields of every record; no spaces in them.
extern char CurrentUserName[1024];
extern char CurrentProcessName[1024];
extern char CurrentModuleName[1024];

// The control block's level, and the value of its update counter when the level was copied.
inline constexpr int32_t kLogDefaultLevel = 3;
extern int32_t CurrentTraceLevel;
extern uint64_t TraceLevelUpdateCount;

// kLogModeOff: the process cannot join the log and writes nothing. Nothing sets it here.
extern int32_t CurrentLogMode;
inline constexpr int32_t kLogModeOff = 6;

// When set, is called with ("%s\n", record) for every record formatted. Nothing sets it here.
extern int (*UserOutputFunc)(const char* format, ...);

// The mapped control block; null while the process has not joined.
extern void* pShareMemory;
inline LogControlBlock* ControlBlock() { return static_cast<LogControlBlock*>(pShareMemory); }

// 1 between joining and leaving the log.
extern int64_t bLogInitialized;

// 1: the machine-wide lock and control block are in use; 0: the user's own.
extern int32_t bUseGlobalSession;

// See IsShareMemoryPrivate and IsShareMemoryReadWriteView.
extern int32_t bIsShareMemoryPrivate;
extern int32_t bIsShareMemoryReadWriteView;

extern const char kPathSeparator;

#endif  // LIBS_KXLOG_KXLOGSERVICE_LOGSTATE_H_
