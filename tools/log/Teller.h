// Tells a run, mark by mark.

#ifndef TOOLS_LOG_TELLER_H_
#define TOOLS_LOG_TELLER_H_

#include <vector>

#include "tools/log/Course.h"
#include "tools/log/Mark.h"

namespace log_reader {

// In order of time; many equal things are one mark.
std::vector<Mark> MarksOf(const Run& run, const Course& course, const std::vector<Event>& events);

}  // namespace log_reader

#endif  // TOOLS_LOG_TELLER_H_
