// The marks of a run's story.

#ifndef TOOLS_LOG_TELLER_H_
#define TOOLS_LOG_TELLER_H_

#include <string>
#include <vector>

#include "tools/log/Course.h"

namespace log_reader {

struct Mark {
  enum class Tone { kPlain, kGood, kBad, kQuestion, kMinor };
  Tone tone = Tone::kPlain;
  long long at = 0;   // milliseconds since the run's first record
  std::string from;   // hosts; empty is the program itself
  std::string to;     // the same as `from` when nothing went anywhere
  std::string label;  // a few words, for the picture
  std::string text;   // a sentence
  const Record* record = nullptr;
};

// In order of time; many equal things are one mark.
std::vector<Mark> MarksOf(const Run& run, const Course& course, const std::vector<Event>& events);

}  // namespace log_reader

#endif  // TOOLS_LOG_TELLER_H_
