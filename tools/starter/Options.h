// The starter's command line.

#ifndef TOOLS_STARTER_OPTIONS_H_
#define TOOLS_STARTER_OPTIONS_H_

#include <string>
#include <vector>

#include "tools/starter/LaunchStep.h"

struct Options {
  StepSettings step;
  bool json = false;
  bool help = false;
};

// The text for --help; fits a screen.
extern const char kHelp[];

// Reads the arguments (without the program's name), and the cookie text from its file or from
// standard input. Returns an empty text, or what is wrong in one line.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);

#endif  // TOOLS_STARTER_OPTIONS_H_
