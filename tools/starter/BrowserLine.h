// What a line of the helper's browser tells: one that begins with "cef: ".

#ifndef TOOLS_STARTER_BROWSERLINE_H_
#define TOOLS_STARTER_BROWSERLINE_H_

#include <string>

namespace ebStarter {

// `text` is the line without its mark.
struct BrowserLine {
  explicit BrowserLine(const std::string& text);

  bool failure = true;  // the browser's; else what was on the screen when the step ended
  std::string reason;   // as in Outcome::reason
  std::string host;     // whose page or certificate it was, if any
  std::string error;    // the network's, as "net::ERR_...", if any
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_BROWSERLINE_H_
