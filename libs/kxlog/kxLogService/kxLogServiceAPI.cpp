#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

#include <unistd.h>

#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#include "platform/ThreadId.h"

int KXLogInitialize() { return _KXLogInitialize(); }

int KXLogCleanup() { return _KXLogCleanup(); }

char* KXLogSetModuleName(const char* name) { return _KXLogSetModuleName(name); }

int KXLogEnableMiniDump(const char*) { return 1; }

int IsShareMemoryReadWriteView() { return bIsShareMemoryReadWriteView; }

void SetShareMemoryReadWriteViewFlag(int flag) { bIsShareMemoryReadWriteView = flag; }

int IsShareMemoryPrivate() { return bIsShareMemoryPrivate; }

void SetShareMemoryPrivateFlag(int flag) { bIsShareMemoryPrivate = flag; }

int KXGetCurrentProcessId(uint32_t* out) {
  *out = static_cast<uint32_t>(getpid());
  return 1;
}

int KXGetCurrentThreadId(uint32_t* out) {
  *out = CurrentThreadId();
  return 1;
}
