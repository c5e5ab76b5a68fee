// The log of all of the product's processes: one file, one record a line.
//
// A process calls KXLogSetModuleName and KXLogInitialize once at its start; after that any thread
// may log, at the cost of a lock shared by all processes. Until then, and whenever the log cannot
// be reached, records are dropped: nothing here reports errors other than by its result, and
// nothing is written to standard error. Not for signal handlers.

#ifndef LIBS_KXLOG_KXLOGSERVICE_KXLOGSERVICEAPI_H_
#define LIBS_KXLOG_KXLOGSERVICE_KXLOGSERVICEAPI_H_

#include "libs/kxlog/kxLogService/LogFields.h"
#include "libs/kxlog/kxLogService/SourceName.h"

// Writes one record and names the calling file and line in it.
//
// `level` is 1 for errors, 2 for warnings, 3 for milestones of a run, 4 for a detailed trace, 5 for
// the finest detail. `module` is a short tag or null. The rest is a printf format, in UTF-8, with
// its arguments; they are evaluated even when the record's level is not written.
#define KXLOG(level, module, ...)                                                \
  do {                                                                           \
    static constexpr auto kxlog_source = EB_SOURCE_NAME(__FILE__);               \
    _KXLogEntryNew((level), kxlog_source.text, __LINE__, (module), __VA_ARGS__); \
  } while (false)

// Joins the shared log, setting it up when this process is the first. Returns 1 on success, also
// when the process has joined already; 0 when neither the machine-wide nor the user's own log can
// be reached. After 0 it may still hold the log lock until it ends; every further call then returns
// 0 at once. Waits for the lock for at most 2 seconds, as all calls here do.
int KXLogInitialize();

// Leaves the shared log; returns 1. The log file stays open until the process ends.
int KXLogCleanup();

// Sets the name that the process gives itself in its records, with spaces replaced by "_", cut to
// 1,023 bytes. Returns where the name is kept. Not thread-safe: called once at the start.
char* KXLogSetModuleName(const char* name);

// Does nothing and returns 1; callers on other systems get crash dumps by it.
int KXLogEnableMiniDump(const char* name);

// Whether a record of `level` would be written now. The level asked against is that of the control
// block, read again when the log service has changed it.
bool KXLogShouldLog(int level);

// Formats and appends one record; see KXLOG for the arguments. Only the part of `sourceFile` after
// its last '/' is written. Returns the record's length in bytes, without its header, or 0 when
// nothing was written. A message too long for the line is cut, but the length counts it whole.
//
// A caller that already holds the log lock passes "<>" and 0 for `sourceFile` and `line`: the
// record is then written whatever its level, and the lock is left alone.
[[gnu::format(printf, 5, 6)]] int _KXLogEntryNew(int level, const char* sourceFile, int line,
                                                 const char* module, const char* format, ...);

// Whether this process may update the control block (set by a successful KXLogInitialize), and
// whether it has the control block for itself (never set in this product). 1 or 0.
int IsShareMemoryReadWriteView();
void SetShareMemoryReadWriteViewFlag(int flag);
int IsShareMemoryPrivate();
void SetShareMemoryPrivateFlag(int flag);

#endif  // LIBS_KXLOG_KXLOGSERVICE_KXLOGSERVICEAPI_H_
