// What whoever started the program is told.

#ifndef CEF_CHROMIUM_BASE_SAY_H_
#define CEF_CHROMIUM_BASE_SAY_H_

#include <string>

namespace engine {

// Prints one line to standard error that says why the run comes to nothing, without a line end. It
// begins with "cef: ", which tells it from all other lines: callers look for it, and know what it
// says by its first words. Any thread.
void Say(const std::string& text);

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_SAY_H_
