// What a record says about itself and its process: time, user, process, thread.

#ifndef LIBS_KXLOG_KXLOGSERVICE_LOGFIELDS_H_
#define LIBS_KXLOG_KXLOGSERVICE_LOGFIELDS_H_

#include <cstddef>
#include <cstdint>

// The numbers by which a record names process and thread. Both return 1.
int KXGetCurrentProcessId(uint32_t* out);
int KXGetCurrentThreadId(uint32_t* out);

// Local wall time: year, month (1-12), day of week (0 is Sunday), day of month, hour, minute,
// second, milliseconds.
void GetLocalSystemTime(uint16_t out[8]);

// Copies the real user's login name into `dest`, which has room for `*len` bytes; either may be
// null or zero to skip the copy. Sets `*len` to the length of the whole name. Returns false, with
// `*len` 0, when the user has no entry.
bool GetUserName(char* dest, size_t* len);

// The real user's home folder by the user database, not by the environment; "~" when there is no
// entry. The text lives as long as the process.
const char* GetUserHome();

// Puts the process's short name, with spaces replaced by "_", into CurrentProcessName. Returns
// false, leaving the name as it was, when the system does not tell.
bool GetCurrentProcessName();

// Copies the process's short name to `dest`, cut to `size` - 1 bytes, and remembers it: the system
// is asked only once. Returns false when it does not tell.
bool GetModuleFilePath(char* dest, size_t size);

// Replaces each space among the first `n` bytes by "_", since spaces separate the fields of a
// record. Returns `s`.
char* EscapeParameter(char* s, size_t n);

#endif  // LIBS_KXLOG_KXLOGSERVICE_LOGFIELDS_H_
