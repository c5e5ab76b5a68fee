// The languages that the user reads, by the environment: what the program's own questions, the
// pages in its window and the starter's sentences go by.

#ifndef PLATFORM_USERLANGUAGES_H_
#define PLATFORM_USERLANGUAGES_H_

#include <string>
#include <vector>

// Such as "de-AT", the preferred one first: those that LANGUAGE lists, else that of the locale in
// LC_ALL, LC_MESSAGES or LANG, of which the first that is set counts. Empty when they name none.
std::vector<std::string> UserLanguages();

#endif  // PLATFORM_USERLANGUAGES_H_
