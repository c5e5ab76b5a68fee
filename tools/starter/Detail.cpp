#include "tools/starter/Detail.h"

#include <rapidjson/encodings.h>
#include <rapidjson/stream.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <system_error>

#include "tools/starter/BrowserLine.h"

namespace ebStarter {

namespace {

// What betrays a cookie's value, and values too short to be a secret.
constexpr size_t kTellingPart = 6;
constexpr size_t kPlainValue = 3;

// The text with everything replaced that is no printable UTF-8.
std::string Printable(const std::string& text) {
  // A sequence that is cut off at the end makes the decoder read on.
  const std::string padded = text + std::string(4, '\0');
  rapidjson::StringStream stream(padded.c_str());
  std::string printable;
  while (stream.Tell() < text.size()) {
    const size_t begin = stream.Tell();
    unsigned code = 0;
    const bool valid = rapidjson::UTF8<>::Decode(stream, &code);
    const bool control = code < 0x20 || (code >= 0x7f && code < 0xa0);
    if (valid && !control) {
      printable.append(text, begin, stream.Tell() - begin);
    } else {
      printable += '?';
    }
  }
  return printable;
}

// Whether the line holds a telling part of a value in "name=value; name=value".
bool HoldsPartOf(const std::string& cookies, const std::string& line) {
  std::istringstream pieces(cookies);
  for (std::string piece; std::getline(pieces, piece, ';');) {
    const size_t equals = piece.find('=');
    const std::string value = equals == std::string::npos ? piece : piece.substr(equals + 1);
    if (value.size() <= kPlainValue) continue;
    const size_t part = std::min(value.size(), kTellingPart);
    for (size_t i = 0; i + part <= value.size(); ++i) {
      if (line.find(value.substr(i, part)) != std::string::npos) return true;
    }
  }
  return false;
}

// A line of the helper as it may be shown. It may well hold the request: the helper's name is one.
std::string Shown(const std::string& line, const Settings& settings, const Outcome& outcome) {
  bool secret = HoldsPartOf(settings.request.cookie, line);
  if (outcome.data) {
    secret = secret || HoldsPartOf(outcome.data->idp_cookies, line) ||
             HoldsPartOf(outcome.data->post_auth_cookie, line);
  }
  return secret ? "(not repeated here: it holds part of a cookie)" : Printable(line);
}

std::string SignalName(int number) {
  constexpr struct {
    int number;
    const char* name;
  } kNames[] = {{SIGHUP, "SIGHUP"},   {SIGINT, "SIGINT"},   {SIGTERM, "SIGTERM"},
                {SIGKILL, "SIGKILL"}, {SIGABRT, "SIGABRT"}, {SIGSEGV, "SIGSEGV"},
                {SIGBUS, "SIGBUS"},   {SIGILL, "SIGILL"},   {SIGFPE, "SIGFPE"},
                {SIGTRAP, "SIGTRAP"}, {SIGQUIT, "SIGQUIT"}};
  for (const auto& entry : kNames) {
    if (entry.number == number) return entry.name;
  }
  return "signal " + std::to_string(number);
}

std::string HowItEnded(const HelperEnd& end) {
  if (end.killed_by) return "the helper was killed by " + SignalName(end.killed_by);
  if (end.exit_status < 0) return "it is not known how the helper ended";
  return "the helper exited with status " + std::to_string(end.exit_status) +
         (end.exit_status == 255 ? " (its catalogs or the request are unusable)" : "");
}

std::string Seconds(std::chrono::milliseconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%g seconds", static_cast<double>(time.count()) / 1000);
  return time == std::chrono::seconds(1) ? "1 second" : text;
}

// Of a step that came to nothing, where its end tells more than its verdict; else empty.
std::string WhatWasShown(const Outcome& outcome) {
  const BrowserLine line(Printable(outcome.end.browser_remark));
  if (outcome.reason == "page-unreachable") {
    return line.host + " could not be reached: " + line.error + "; check the network";
  }
  if (outcome.reason == "certificate-refused") {
    return "the certificate of " + line.host + " was refused: " + line.error +
           "; if the address is right, ask the administrator to put the certificate right";
  }
  if (outcome.reason == "certificate-question") {
    return "nobody answered the question about the certificate of " + line.host + ": " + line.error;
  }
  if (outcome.reason == "page-loading") return line.host + " did not answer";
  if (outcome.reason == "nothing-shown") return "nothing had come";
  return line.host.empty() ? "" : "the page of " + line.host + " was shown";
}

}  // namespace

std::string DetailOf(const Settings& settings, const Outcome& outcome) {
  const HelperEnd& end = outcome.end;
  const std::string shown = WhatWasShown(outcome);
  switch (outcome.verdict) {
    case Verdict::kSignedIn:
      break;
    case Verdict::kNotStarted:
      return "cannot execute " + Printable(settings.program) + ": " +
             std::generic_category().message(end.start_error);
    case Verdict::kRefused:
      if (!shown.empty()) return "the identity provider answered, but then " + shown;
      return "the identity provider answered, but the gateway opened no session; sign in again, or "
             "ask the gateway's administrator";
    case Verdict::kHostCheckNeeded:
      return "the gateway wants this computer checked first; run its host check, then sign in "
             "again";
    case Verdict::kHostCheckFailed:
      return "this computer did not pass the gateway's host check; ask the gateway's administrator "
             "what it lacks";
    case Verdict::kLoggedOut: {
      const std::string& url = outcome.data->idp_logout_url;
      return "state " + std::to_string(outcome.data->slo_state) +
             (url.empty() ? "" : ", continue at " + Printable(url));
    }
    case Verdict::kClosedByUser:
      if (!shown.empty()) return "the window was closed after " + shown;
      return "the window was closed before the step had finished; start the step again";
    case Verdict::kTimedOut:
      return "the step had not finished after " + Seconds(settings.limits.time) +
             (shown.empty() ? "" : " and " + shown) + "; start it again, with more time if need be";
    case Verdict::kNothingWritten:
    case Verdict::kCrashed:
      if (end.last_line.empty()) return HowItEnded(end) + "; its log says why";
      return HowItEnded(end) + "; its last line was: " + Shown(end.last_line, settings, outcome);
    case Verdict::kStopped:
      return SignalName(end.stopped_by) + " arrived before the step had finished" +
             (shown.empty() ? "" : "; " + shown);
    case Verdict::kUnreadable:
      return HowItEnded(end) +
             " and left something other than a result; reinstall it if this happens again";
    case Verdict::kBusy:
      break;
    case Verdict::kBrowserFailed:
      return Shown(end.browser_failure, settings, outcome);
  }
  return "";
}

}  // namespace ebStarter
