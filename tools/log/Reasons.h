// Why a step has not come to its end, for each kind of step.

#ifndef TOOLS_LOG_REASONS_H_
#define TOOLS_LOG_REASONS_H_

#include <string>
#include <vector>

#include "tools/log/Course.h"

namespace log_reader {

struct Sentence {
  std::string text;
  const Record* record = nullptr;  // what shows it; null when it is what no record shows
};

// The reasons why a step that was begun proved nothing, the first first; may be empty.
std::vector<Sentence> ReasonsOf(const Course& course);

}  // namespace log_reader

#endif  // TOOLS_LOG_REASONS_H_
