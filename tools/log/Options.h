// The reader's command line.

#ifndef TOOLS_LOG_OPTIONS_H_
#define TOOLS_LOG_OPTIONS_H_

#include <string>
#include <vector>

#include "tools/log/Filter.h"

namespace log_reader {

struct Options {
  enum class Command { kRecords, kRuns, kStory, kShowLevel, kSetLevel, kHelp, kVersion };

  Command command = Command::kRecords;
  std::string file;  // empty: where the client's programs write
  Filter filter;
  std::string only_run;      // for kRecords; empty: all
  std::string run = "last";  // for kStory, as ChooseRun() takes it
  bool explain = false;      // tell the story, ...
  std::string picture;       // ... and draw it into this file, if named
  bool follow = false;
  bool json = false;
  bool secrets = false;
  int level = 0;  // for kSetLevel
};

// The text for --help; fits a screen of 80 by 24.
extern const char kHelp[];

// Reads the arguments, without the program's name. Returns an empty text, or what is wrong in one
// line.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);

}  // namespace log_reader

#endif  // TOOLS_LOG_OPTIONS_H_
