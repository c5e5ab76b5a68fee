// A run as a story: what happened, mark by mark, and how it ended. It is told in words and drawn as
// a picture, both from the records alone and without secrets.

#ifndef TOOLS_LOG_STORY_H_
#define TOOLS_LOG_STORY_H_

#include <ostream>
#include <string>
#include <vector>

#include "tools/log/Ending.h"
#include "tools/log/Runs.h"
#include "tools/log/Teller.h"

namespace log_reader {

struct Story {
  std::string title;  // "SAML sign-in of ada at gateway.example, process 4711, 2026/11/21 21:55:02"
  std::string gateway;
  std::string provider;
  long long length = 0;
  std::vector<Mark> marks;
  Ending ending;
};

// The story points to the run's records.
Story Tell(const Run& run);

// Writes the story as text: a line for each mark with the time since the run's beginning and the
// record behind it, then the ending and its reasons.
void Explain(const Story& story, std::ostream& out);

// One line: process, beginning, length, user, kind, gateway and ending.
std::string Summary(const Run& run);

}  // namespace log_reader

#endif  // TOOLS_LOG_STORY_H_
