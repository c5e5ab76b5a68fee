#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "libs/kxlog/kxLogService/LogRecord.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

namespace {

// Whether the log service has set a level. A block that was zeroed and set up anew has none, though
// its counter differs from the one last seen.
bool HasLevel(const LogControlBlock& block) {
  return block.level_updates != 0 || block.trace_level != 0;
}

// The path in the control block was not acceptable: clears the block and joins anew, which sets
// the path afresh.
void ResetLog() {
  // The block is unmapped before the lock is released, since other threads of this process use it
  // under the lock. Without the lock the process leaves and joins anyway. What another process has
  // mended in the meantime is left alone.
  if (LogLock()) {
    if (pShareMemory != nullptr && !NamesLogFile(*ControlBlock())) {
      memset(pShareMemory, 0, sizeof(LogControlBlock));
    }
    KXLogCleanup();
    LogUnlock();
  } else {
    KXLogCleanup();
  }
  KXLogInitialize();
}

}  // namespace

int KXLogInitialize() { return _KXLogInitialize(); }

int KXLogCleanup() { return _KXLogCleanup(); }

char* KXLogSetModuleName(const char* name) { return _KXLogSetModuleName(name); }

int KXLogEnableMiniDump(const char*) { return 1; }

int IsShareMemoryReadWriteView() { return bIsShareMemoryReadWriteView; }

void SetShareMemoryReadWriteViewFlag(int flag) { bIsShareMemoryReadWriteView = flag; }

int IsShareMemoryPrivate() { return bIsShareMemoryPrivate; }

void SetShareMemoryPrivateFlag(int flag) { bIsShareMemoryPrivate = flag; }

bool KXLogShouldLog(int level) {
  if (!LogIsInitialized() || !LogLock()) return false;
  const LogControlBlock* block = ControlBlock();
  if (block == nullptr || CurrentLogMode == kLogModeOff) {
    LogUnlock();
    return false;
  }
  if (block->level_updates != TraceLevelUpdateCount) {
    TraceLevelUpdateCount = block->level_updates;
    CurrentTraceLevel = HasLevel(*block) ? block->trace_level : kLogDefaultLevel;
  }
  const bool wanted = CurrentTraceLevel >= level;
  LogUnlock();
  return wanted;
}

int _KXLogEntryNew(int level, const char* sourceFile, int line, const char* module,
                   const char* format, ...) {
  const bool holds_lock = line == 0 && strcmp(sourceFile, "<>") == 0;
  if (!holds_lock && !KXLogShouldLog(level)) return 0;

  LogRecord record(level, sourceFile, line, module);
  va_list args;
  va_start(args, format);
  record.AppendMessage(format, args);
  va_end(args);
  record.EndLine();
  char header[32] = {};
  snprintf(header, sizeof(header), "%05d,%02d ", record.length(), module != nullptr ? 9 : 8);
  if (UserOutputFunc != nullptr) UserOutputFunc("%s\n", record.text());

  if (!holds_lock && !LogLock()) return 0;
  int reset_requested = 0;
  const bool written = LogData(header, record.text(), &reset_requested);
  const bool reset = reset_requested != 0 && bIsShareMemoryReadWriteView != 0;
  if (!holds_lock) LogUnlock();
  if (reset) ResetLog();
  return written ? record.length() : 0;
}
