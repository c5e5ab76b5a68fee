#include "tools/starter/BrowserLine.h"

#include <regex>

namespace ebStarter {

namespace {

constexpr struct {
  bool failure;
  const char* form;  // with a host and an error, in this order
  const char* reason;
} kForms[] = {
    {false, "(?:closed by the user after|ended while) ([!-~]+) could not be reached: ([!-~]+)",
     "page-unreachable"},
    {false, "closed by the user after the certificate of ([!-~]+) was refused: ([!-~]+)",
     "certificate-refused"},
    {false, "ended while the certificate of ([!-~]+) was in question: ([!-~]+)",
     "certificate-question"},
    {false, "ended while ([!-~]+) was being loaded", "page-loading"},
    {false, "ended while the page of ([!-~]+) was shown", "page-shown"},
    {false, "ended while nothing had come", "nothing-shown"},
    {true, "Chromium could not be started: no display: .*", "no-display"},
    {true, "Chromium could not be started: no browser: .*", "no-browser"},
    {true, "Chromium could not be started: .*", "browser-not-started"},
    {true, "no browser window could be opened: .*", "no-window"},
    {true, "Chromium exited on its own.*", "browser-exited"},
    {true, "the display has gone", "display-gone"},
};

}  // namespace

BrowserLine::BrowserLine(const std::string& text) : reason("browser-failed") {
  for (const auto& entry : kForms) {
    std::smatch parts;
    if (!std::regex_match(text, parts, std::regex(entry.form))) continue;
    failure = entry.failure;
    reason = entry.reason;
    host = parts.size() > 1 ? parts.str(1) : "";
    error = parts.size() > 2 ? parts.str(2) : "";
    return;
  }
}

}  // namespace ebStarter
