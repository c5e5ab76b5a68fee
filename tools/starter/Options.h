// The starter's command line.

#ifndef TOOLS_STARTER_OPTIONS_H_
#define TOOLS_STARTER_OPTIONS_H_

#include <string>
#include <vector>

#include "tools/starter/ebStarter.h"

struct Options {
  ebStarter::Settings step;
  bool wait = false;
  bool json = false;
  std::string tape;  // where to write one; empty: nowhere
  bool help = false;
  bool version = false;
  std::string warning;  // one line for the user; the step runs anyway
};

// The text for --help; fits a screen of 80 by 24.
extern const char kHelp[];

// Reads the arguments (without the program's name), and the cookie text from its file or from
// standard input once all of them are in order. Returns an empty text, or what is wrong in one
// line.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);

#endif  // TOOLS_STARTER_OPTIONS_H_
