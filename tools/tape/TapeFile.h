// A tape as a file: for nobody but its user, and never in the place of somebody else's.

#ifndef TOOLS_TAPE_TAPEFILE_H_
#define TOOLS_TAPE_TAPEFILE_H_

#include <string>

#include "tools/tape/Tape.h"

namespace tape {

// Why a tape cannot be written there; empty when it can. What is there already must be a plain file
// of this user.
std::string WhyNotTo(const std::string& path);

// Writes the file with mode 0600, whole or not at all; follows no link. Returns what is wrong.
std::string WriteTape(const Tape& tape, const std::string& path);

// Throws std::runtime_error with the path and the reason.
Tape ReadTape(const std::string& path);

}  // namespace tape

#endif  // TOOLS_TAPE_TAPEFILE_H_
