// What a verdict says to people.

#ifndef TOOLS_STARTER_DETAIL_H_
#define TOOLS_STARTER_DETAIL_H_

#include <string>

#include "tools/starter/ebStarter.h"

namespace ebStarter {

// One line of printable UTF-8 for an outcome that has its verdict, data and end: what happened and
// what to do. A line of the helper is left out when it holds a part of a cookie.
std::string DetailOf(const Settings& settings, const Outcome& outcome);

}  // namespace ebStarter

#endif  // TOOLS_STARTER_DETAIL_H_
