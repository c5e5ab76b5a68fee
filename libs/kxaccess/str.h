// Wide to narrow text in the process's own locale.

#ifndef LIBS_KXACCESS_STR_H_
#define LIBS_KXACCESS_STR_H_

#include <string>

// The multibyte form of `text` in the current C locale. Empty for a null pointer, and when any
// character has no form in that locale: in the "C" locale that is every character outside ASCII.
// For UTF-8 whatever the locale is, see WideToUtf8 in utf8.h.
std::string W2Astring(const wchar_t* text);

#endif  // LIBS_KXACCESS_STR_H_
