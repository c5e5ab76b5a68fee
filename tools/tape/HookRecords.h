// The records in which the program notes what its two hooks were given and answered.

#ifndef TOOLS_TAPE_HOOKRECORDS_H_
#define TOOLS_TAPE_HOOKRECORDS_H_

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "tools/log/Record.h"
#include "tools/tape/StandIns.h"
#include "tools/tape/Tape.h"

namespace tape {

// The level of the log at which they are written.
inline constexpr int kHookLevel = 5;

// True for a record that a tape is made from.
bool IsOfHooks(const log_reader::Record& record);

// What the hooks of one process were given, in the order of its records.
std::vector<Entry> ReadEntries(const std::vector<log_reader::Record>& records, pid_t process,
                               std::chrono::system_clock::time_point begin, StandIns& stand_ins);

}  // namespace tape

#endif  // TOOLS_TAPE_HOOKRECORDS_H_
