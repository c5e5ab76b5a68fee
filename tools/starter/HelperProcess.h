// Running the helper: start, wait with a bound, ask it to end, reap.

#ifndef TOOLS_STARTER_HELPERPROCESS_H_
#define TOOLS_STARTER_HELPERPROCESS_H_

#include "tools/starter/ebStarter.h"

namespace ebStarter {

// Executes the program of `settings` with its request as its only argument, argv[0]. Returns when
// it has ended and has been reaped. Each byte that comes from `stop` (a descriptor, -1: none) is
// the number of a signal for the helper. Throws std::runtime_error or std::system_error when the
// process lacks descriptors or threads; no helper is left then.
HelperEnd RunHelper(const Settings& settings, int stop);

}  // namespace ebStarter

#endif  // TOOLS_STARTER_HELPERPROCESS_H_
