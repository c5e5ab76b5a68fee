#include "tools/starter/Options.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

constexpr long kMaxTimeoutSeconds = 24 * 60 * 60;

// One cookie text, without the line ends that files end in.
std::string ReadCookie(std::istream& in) {
  std::string text{std::istreambuf_iterator<char>(in), {}};
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  return text;
}

std::string Take(const std::string& option, const std::string& value, Options& options) {
  StepSettings& step = options.step;
  if (option == "--type") {
    const std::optional<StepType> type = StepTypeNamed(value);
    if (!type) return "--type must be saml-login, custom or saml-logout";
    step.request.type = *type;
  } else if (option == "--url") {
    step.request.url = value;
  } else if (option == "--cookie") {
    step.request.cookie = value;
  } else if (option == "--cookie-file") {
    std::ifstream file(value, std::ios::binary);
    if (!file) return "cannot read " + value;
    step.request.cookie = ReadCookie(file);
  } else if (option == "--clear-cookies") {
    step.request.clear_cookies_url = value;
  } else if (option == "--program") {
    step.program = value;
  } else if (option == "--timeout") {
    char* end = nullptr;
    const long seconds = std::strtol(value.c_str(), &end, 10);
    if (value.empty() || *end || seconds < 1 || seconds > kMaxTimeoutSeconds) {
      return "--timeout takes seconds, 1 to 86400";
    }
    step.limits.time = std::chrono::seconds(seconds);
  } else {
    return "unknown option " + option;
  }
  return "";
}

}  // namespace

const char kHelp[] =
    R"(embedded-browser-start: runs one sign-in or sign-out step in the browser helper.

  --type KIND          saml-login, custom or saml-logout (required)
  --url URL            the gateway's address that begins the step (required)
  --cookie TEXT        the gateway's cookies: "name=value;..."; for saml-logout parted by ";;"
  --cookie-file FILE   the same from a file, --cookie-stdin from standard input:
                       arguments can be seen by others
  --clear-cookies URL  saml-login: forget all cookies first; URL is the logout address
  --timeout SECONDS    time limit of the step, default 300
  --json               print verdict and return data as one JSON object
  --program PATH       the helper; default: the installed one

Prints one line with the verdict on standard output. Exit status:
   0 signed in                  7 closed by user
   1 not started                8 timed out
   2 wrong usage                9 nothing written
   3 refused                   10 crashed
   4 host check needed         11 stopped by a signal
   5 host check failed         12 unreadable result
   6 logged out (state 2 or 5)
Ctrl-C ends the step in order; what was gathered until then is judged.
)";

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  bool typed = false;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& option = arguments[i];
    if (option == "--help" || option == "-h") {
      options.help = true;
      return "";
    }
    if (option == "--json") {
      options.json = true;
    } else if (option == "--cookie-stdin") {
      options.step.request.cookie = ReadCookie(std::cin);
    } else if (i + 1 == arguments.size()) {
      return option.compare(0, 2, "--") == 0 ? option + " is unknown or lacks its value"
                                             : "unknown argument " + option;
    } else {
      typed = typed || option == "--type";
      const std::string wrong = Take(option, arguments[++i], options);
      if (!wrong.empty()) return wrong;
    }
  }
  if (!typed) return "--type is missing";
  return options.step.request.url.empty() ? "--url is missing" : "";
}
