#include "tools/starter/Options.h"

#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace {

constexpr long kMaxTimeoutSeconds = 24 * 60 * 60;
constexpr size_t kMaxCookie = 64 * 1024;

// Where the cookie text comes from. "-" is a file's name like any other.
struct CookieSource {
  enum { kNone, kArgument, kFile, kInput } kind = kNone;
  std::string text;
  bool twice = false;

  void Set(decltype(kind) new_kind, const std::string& new_text) {
    twice = kind != kNone;
    kind = new_kind;
    text = new_text;
  }
};

// http or https, and a host, maybe with a port. What the path may hold is the browser's business.
bool IsWebAddress(const std::string& url) {
  const auto control = [](unsigned char c) { return c < ' ' || c == 0x7f; };
  if (std::any_of(url.begin(), url.end(), control)) return false;
  const size_t colon = std::min(url.find("://"), url.size());
  const std::string scheme = url.substr(0, colon);
  if (strcasecmp(scheme.c_str(), "http") != 0 && strcasecmp(scheme.c_str(), "https") != 0) {
    return false;
  }
  std::string host = url.substr(std::min(colon + 3, url.size()));
  host.erase(std::min(host.find_first_of("/?#\\"), host.size()));
  host.erase(0, host.rfind('@') + 1);
  const size_t digits = host.find_last_not_of("0123456789");
  if (digits != std::string::npos && host[digits] == ':') {
    if (host.size() - digits > 6) return false;
    host.erase(digits);
  }
  if (!host.empty() && host.front() == '[') {
    return host.size() > 3 &&
           host.find_first_not_of("0123456789abcdefABCDEF:.", 1) + 1 == host.size() &&
           host.back() == ']';
  }
  return !host.empty() && host.find_first_of(" <>\"^`{|}[]:%") == std::string::npos;
}

// Takes one cookie text, without the line ends that files end in.
std::string ReadCookie(std::istream& in, const std::string& name, std::string& cookie) {
  cookie.resize(kMaxCookie + 1);
  in.read(cookie.data(), static_cast<std::streamsize>(cookie.size()));
  cookie.resize(static_cast<size_t>(in.gcount()));
  if (in.bad()) return "cannot read " + name;
  if (cookie.size() > kMaxCookie)
    return name + " holds more than 64 KiB, too much for a cookie text";
  while (!cookie.empty() && (cookie.back() == '\n' || cookie.back() == '\r')) cookie.pop_back();
  return "";
}

std::string TakeCookie(const CookieSource& source, Options& options) {
  std::string& cookie = options.step.request.cookie;
  if (source.kind == CookieSource::kArgument) cookie = source.text;
  if (source.kind == CookieSource::kInput) return ReadCookie(std::cin, "standard input", cookie);
  if (source.kind != CookieSource::kFile) return "";
  struct stat status;
  if (stat(source.text.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) {
    return "cannot read " + source.text;
  }
  std::ifstream file(source.text, std::ios::binary);
  if (!file) return "cannot read " + source.text;
  if (S_ISREG(status.st_mode) && (status.st_mode & (S_IRGRP | S_IROTH))) {
    options.warning = "others can read " + source.text + "; chmod 600 keeps its cookies yours";
  }
  return ReadCookie(file, source.text, cookie);
}

// An option that takes no value; false when it is none of these.
bool TakeFlag(const std::string& option, Options& options, CookieSource& cookie) {
  if (option == "--help" || option == "-h") {
    options.help = true;
  } else if (option == "--version") {
    options.version = true;
  } else if (option == "--json") {
    options.json = true;
  } else if (option == "--wait") {
    options.wait = true;
  } else if (option == "--cookie-stdin") {
    cookie.Set(CookieSource::kInput, "");
  } else {
    return false;
  }
  return true;
}

std::string TakeTimeout(const std::string& value, ebStarter::Limits& limits) {
  char* end = nullptr;
  const long seconds = std::strtol(value.c_str(), &end, 10);
  if (value.empty() || *end || seconds < 1 || seconds > kMaxTimeoutSeconds) {
    return "--timeout takes seconds, 1 to 86400";
  }
  limits.time = std::chrono::seconds(seconds);
  return "";
}

bool TakesValue(const std::string& option) {
  for (const char* name : {"--type", "--url", "--cookie", "--cookie-file", "--clear-cookies",
                           "--program", "--tape", "--timeout"}) {
    if (option == name) return true;
  }
  return false;
}

std::string TakeValue(const std::string& option, const std::string& value, Options& options,
                      CookieSource& cookie) {
  ebStarter::Settings& step = options.step;
  if (option == "--timeout") return TakeTimeout(value, step.limits);
  if (option == "--type") {
    const auto type = ebStarter::StepTypeNamed(value);
    if (!type) return "--type must be saml-login, custom or saml-logout";
    step.request.type = *type;
  }
  if (option == "--url") step.request.url = value;
  if (option == "--cookie") cookie.Set(CookieSource::kArgument, value);
  if (option == "--cookie-file") cookie.Set(CookieSource::kFile, value);
  if (option == "--clear-cookies") step.request.clear_cookies_url = value;
  if (option == "--program") step.program = value;
  if (option == "--tape") {
    if (value.empty()) return "--tape takes a file's name";
    options.tape = value;
  }
  return "";
}

}  // namespace

const char kHelp[] =
    R"(embedded-browser-start: runs one sign-in or sign-out step in a browser window.

  --type KIND          saml-login, custom or saml-logout (required)
  --url URL            the gateway's address that begins the step (required)
  --cookie TEXT        the gateway's cookies: "name=value;..."; for saml-logout
                       separated by ";;". Other users can see arguments, so use:
  --cookie-file FILE   the same from a file
  --cookie-stdin       the same from standard input
  --clear-cookies URL  saml-login: delete all cookies first; the logout address
  --timeout SECONDS    time limit of the step, 1 to 86400, default 300
  --wait               wait while another step runs, no longer than a step may
  --json               print verdict and return data as one JSON object
  --tape FILE          record the step for embedded-browser-gateway, no secrets
  --program PATH       the helper; default: the installed one
  --help, --version    print this text, or the version
Prints the verdict in one line. Exit status:
   0 signed in              5 host check failed    10 crashed
   1 not started            6 logged out           11 stopped by a signal
   2 wrong usage            7 closed by user       12 unreadable result
   3 refused                8 timed out            13 browser failed
   4 host check needed      9 nothing written      14 another step is running
Ctrl-C ends the step cleanly; what it had gathered by then is still judged.
)";

std::string ParseOptions(const std::vector<std::string>& arguments, Options& options) {
  bool typed = false;
  CookieSource cookie;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const size_t equals = arguments[i].find('=');
    const bool joined = equals != std::string::npos;
    const std::string option = arguments[i].substr(0, equals);
    if (!joined && TakeFlag(option, options, cookie)) {
      if (options.help || options.version) return "";
      continue;
    }
    if (!TakesValue(option)) {
      if (option.rfind("--", 0) != 0) return "unknown argument " + option;
      return TakeFlag(option, options, cookie) ? option + " takes no value"
                                               : "unknown option " + option;
    }
    if (!joined && i + 1 == arguments.size()) return option + " needs a value";
    const std::string value = joined ? arguments[i].substr(equals + 1) : arguments[++i];
    const std::string wrong = TakeValue(option, value, options, cookie);
    if (!wrong.empty()) return wrong;
    typed = typed || option == "--type";
  }
  if (options.wait) options.step.limits.turn = options.step.limits.time;
  if (!typed) return "--type is missing";
  if (options.step.request.url.empty()) return "--url is missing";
  if (!IsWebAddress(options.step.request.url)) {
    return "--url takes an http or https address with a host";
  }
  if (cookie.twice)
    return "give only one of --cookie, --cookie-file and --cookie-stdin, and only once";
  return TakeCookie(cookie, options);
}
