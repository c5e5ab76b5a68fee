#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

char CurrentUserName[1024] = "Unknown_User";
char CurrentProcessName[1024] = "Unknown.exe";
char CurrentModuleName[1024] = "Unknown_Module";
int32_t CurrentTraceLevel = 3;
uint64_t TraceLevelUpdateCount = 0;
int32_t CurrentLogMode = 0;
int (*UserOutputFunc)(const char* format, ...) = nullptr;
void* pShareMemory = nullptr;
int64_t bLogInitialized = 0;
int32_t bUseGlobalSession = 0;
int32_t bIsShareMemoryPrivate = 0;
int32_t bIsShareMemoryReadWriteView = 0;
const char kPathSeparator = '/';

namespace {

// No piece of a record may reach beyond the first bound, the source field beyond the second: a
// difference that is kept on purpose. What is left of the line holds the CR LF.
constexpr int kPieceBound = 4036;
constexpr int kSourceBound = 4093;

class Record {
 public:
  // Appends a formatted piece, cut so that no text lies at or after `bound`.
  [[gnu::format(printf, 3, 4)]] void Append(int bound, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int length = Format(bound, format, args);
    va_end(args);
    if (length > 0) length_ += length;
  }

  void AppendMessage(const char* format, va_list args) {
    const int length = Format(kPieceBound, format, args);
    if (length >= 0) {
      length_ += length;
      return;
    }
    if (length == -1) length_ = kPieceBound;
    if (length_ < static_cast<int>(sizeof(text_))) text_[length_] = '\0';
  }

  void EndLine() {
    const size_t end = strlen(text_);
    snprintf(text_ + end, sizeof(text_) - end, "\r\n");
    length_ += 2;
  }

  const char* text() const { return text_; }

  // What the pieces would take uncut, so it may exceed what the text holds.
  int length() const { return length_; }

 private:
  int Format(int bound, const char* format, va_list args) {
    if (length_ >= bound) return vsnprintf(nullptr, 0, format, args);
    return vsnprintf(text_ + length_, static_cast<size_t>(bound - length_), format, args);
  }

  char text_[4096] = {};
  int length_ = 0;
};

void AppendFields(Record* record, int level, const char* sourceFile, int line, const char* module) {
  uint16_t now[8];
  GetLocalSystemTime(now);
  uint32_t process = 0;
  uint32_t thread = 0;
  KXGetCurrentProcessId(&process);
  KXGetCurrentThreadId(&thread);
  const char* slash = strrchr(sourceFile, kPathSeparator);

  record->Append(kPieceBound, "%04d/%02d/%02d %02d:%02d:%02d.%03d ", now[0], now[1], now[3], now[4],
                 now[5], now[6], now[7]);
  record->Append(kPieceBound, "%1d ", level);
  record->Append(kPieceBound, "%s ", CurrentUserName);
  record->Append(kPieceBound, "%s ", CurrentProcessName);
  record->Append(kPieceBound, "%s ", CurrentModuleName);
  record->Append(kPieceBound, "p%04d ", static_cast<int>(process));
  record->Append(kPieceBound, "t%-3X ", thread);
  record->Append(kSourceBound, "%s:%d - ", slash ? slash + 1 : sourceFile, line);
  if (module != nullptr) record->Append(kPieceBound, "'%s' ", module);
}

// The path in the control block was not acceptable: clears the block and joins anew, which sets
// the path afresh.
void ResetLog() {
  // The block is unmapped before the lock is released, since other threads of this process use it
  // under the lock. Without the lock the process leaves and joins all the same.
  if (LogLock()) {
    if (pShareMemory != nullptr) memset(pShareMemory, 0, sizeof(LogControlBlock));
    KXLogCleanup();
    LogUnlock();
  } else {
    KXLogCleanup();
  }
  KXLogInitialize();
}

}  // namespace

int _KXLogInitialize() { return KXLogProcessAttachInit() ? 1 : 0; }

int _KXLogCleanup() {
  const bool detached = KXLogProcessDetachInit();
  LogProtectionCleanUp();
  return detached ? 1 : 0;
}

char* _KXLogSetModuleName(const char* name) {
  snprintf(CurrentModuleName, sizeof(CurrentModuleName), "%s", name);
  return EscapeParameter(CurrentModuleName, strlen(CurrentModuleName));
}

char* EscapeParameter(char* s, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (s[i] == ' ') s[i] = '_';
  }
  return s;
}

bool KXLogShouldLog(int level) {
  if (!LogIsInitialized() || !LogLock()) return false;
  const LogControlBlock* block = ControlBlock();
  if (block == nullptr || CurrentLogMode == kLogModeOff) {
    LogUnlock();
    return false;
  }
  if (block->level_updates != TraceLevelUpdateCount) {
    TraceLevelUpdateCount = block->level_updates;
    CurrentTraceLevel = block->trace_level;
  }
  const bool wanted = CurrentTraceLevel >= level;
  LogUnlock();
  return wanted;
}

int _KXLogEntryNew(int level, const char* sourceFile, int line, const char* module,
                   const char* format, ...) {
  const bool holds_lock = line == 0 && strcmp(sourceFile, "<>") == 0;
  if (!holds_lock && !KXLogShouldLog(level)) return 0;

  Record record;
  AppendFields(&record, level, sourceFile, line, module);
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
  if (!holds_lock) LogUnlock();
  if (reset_requested && bIsShareMemoryReadWriteView) ResetLog();
  return written ? record.length() : 0;
}
