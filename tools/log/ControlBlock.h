// The control block of the log: where the log is, and its level.

#ifndef TOOLS_LOG_CONTROLBLOCK_H_
#define TOOLS_LOG_CONTROLBLOCK_H_

#include <string>

namespace log_reader {

// The file that the machine's control block names, or else the user's; empty without one.
// Everybody can write to the block, so it must be a path at which logs may be.
std::string LogPathInControlBlock();

// Both work on the block that this user's programs share, and return an empty text, or what is
// wrong: there is none yet, somebody else keeps it for himself, or it holds something else.
std::string ReadLevel(int& level);

// Waits at most three seconds for the lock. Each process notices at its next record.
std::string SetLevel(int level);

}  // namespace log_reader

#endif  // TOOLS_LOG_CONTROLBLOCK_H_
