// What a finished step means to the caller.

#ifndef TOOLS_STARTER_VERDICT_H_
#define TOOLS_STARTER_VERDICT_H_

#include <string>

#include "tools/starter/ebStarter.h"

namespace ebStarter {

// Judges a step by what was asked for, by how the helper ended and by the text it left (up to the
// first NUL).
Outcome Judge(const Settings& settings, const HelperEnd& end, const std::string& text);

}  // namespace ebStarter

#endif  // TOOLS_STARTER_VERDICT_H_
