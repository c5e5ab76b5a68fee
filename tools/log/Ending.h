// How a run ended, and why it proved nothing.

#ifndef TOOLS_LOG_ENDING_H_
#define TOOLS_LOG_ENDING_H_

#include <string>
#include <vector>

#include "tools/log/Course.h"
#include "tools/log/Reasons.h"

namespace log_reader {

struct Ending {
  enum class Tone { kGood, kBad, kOpen };
  Tone tone = Tone::kOpen;
  std::string verdict;        // a few words: "signed in", "certificate refused"
  Sentence what;              // the same as a sentence
  std::vector<Sentence> why;  // in the order of importance; for a run that proved nothing
  std::string more;           // what would tell more; may be empty
};

// Says no more than the records show.
Ending EndingOf(const Course& course);

}  // namespace log_reader

#endif  // TOOLS_LOG_ENDING_H_
