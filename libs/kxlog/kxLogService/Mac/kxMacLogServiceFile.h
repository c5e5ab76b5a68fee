// The log's folders and its file: safe creation, appending, rotation to ".old".

#ifndef LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGSERVICEFILE_H_
#define LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGSERVICEFILE_H_

#include <sys/types.h>

#include <cstdint>
#include <cstdio>

#include "libs/kxlog/kxLogService/LogControlBlock.h"

// This process's open log file, or null.
extern FILE* g_hLogFile;

// The control block's rotation generation when g_hLogFile was opened. Every rotation counts the
// generation up, whichever process does it; a process that finds the two different writes to a file
// that has been renamed, and opens the path anew.
extern uint32_t CurrentLogRotationCount;

// Creates a folder and its missing ancestors, with mode 0755; those of the machine-wide log
// whatever the umask, since all users need them. A symbolic link in the place of the folder itself,
// dangling or not, is removed first; links among its ancestors are followed.
bool CreateLogDirectory(const char* path);

// Whether `path` itself is a symbolic link.
bool IsSymLink(const char* path);

inline constexpr mode_t kLogFileMode = 0666;

// Opens a log file for appending, creating it when there is none. It gets kLogFileMode whatever the
// process's umask, since processes of other users append to it too. A link in its place,
// symbolic or hard, is removed, never followed. Returns null on any failure, also when something
// else than a file stands there; the caller closes the stream. Never blocks.
FILE* CreateLogFile(const char* path);

// Whether the control block may name this log file: it must lie in one of the product's log
// folders, compared without regard to case, have no ".." among its components, and neither it nor
// the log folder nor one between them may be a symbolic link.
bool IsValidLogFilePathInSHM(const char* path);

// The same for the path that the control block names.
bool NamesLogFile(const LogControlBlock& block);

// Removes a symbolic link in the place of a log file that the control block may name.
void RemovePlantedLink(const char* path);

// Appends header and record to the log; called with the log lock held. Rotates the file first when
// it has reached the maximum size, and opens it first when that is due, which it also is when the
// path names another file than the open one. What a killed writer has left of a record is cut off.
// Returns false when the file cannot be rotated or
// opened, but true when it had no room: the file then ends with the record before. When the control
// block names an unacceptable file, also sets
// `*resetRequested` (may be null) to 1: the caller then resets the control block.
bool LogData(const char* header, const char* record, int* resetRequested);

// Does nothing.
void LogProtectionCleanUp();

#endif  // LIBS_KXLOG_KXLOGSERVICE_MAC_KXMACLOGSERVICEFILE_H_
