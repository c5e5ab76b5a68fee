// What a run's story is made of.

#ifndef TOOLS_LOG_MARK_H_
#define TOOLS_LOG_MARK_H_

#include <string>

#include "tools/log/Record.h"

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

}  // namespace log_reader

#endif  // TOOLS_LOG_MARK_H_
