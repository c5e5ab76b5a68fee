#include "tools/starter/Verdict.h"

#include <rapidjson/document.h>

#include <cstring>
#include <optional>

namespace {

struct Result {
  std::string post_auth_cookie;
  std::string idp_cookies;
  std::string idp_logout_url;
  int slo_state = 0;
};

std::optional<Result> Parse(const std::string& text) {
  rapidjson::Document document;
  if (document.Parse(text.c_str()).HasParseError() || !document.IsObject()) return std::nullopt;
  Result result;
  const struct {
    const char* key;
    std::string& value;
  } texts[] = {{"postauthcookie", result.post_auth_cookie},
               {"samlidpcookies", result.idp_cookies},
               {"samlidplogoutrequesturl", result.idp_logout_url}};
  for (const auto& member : texts) {
    const auto found = document.FindMember(member.key);
    if (found == document.MemberEnd() || !found->value.IsString()) return std::nullopt;
    member.value.assign(found->value.GetString(), found->value.GetStringLength());
  }
  const auto state = document.FindMember("samlslostate");
  if (state == document.MemberEnd() || !state->value.IsInt()) return std::nullopt;
  result.slo_state = state->value.GetInt();
  return result;
}

bool Holds(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

// What the result alone proves; nothing when it proves nothing.
std::optional<Verdict> Proven(StepType type, const Result& result) {
  if (type == StepType::kSamlLogout) {
    if (result.slo_state == 2 || result.slo_state == 5) return Verdict::kLoggedOut;
    return std::nullopt;
  }
  if (result.post_auth_cookie.empty()) return std::nullopt;
  if (type == StepType::kCustom) {
    if (Holds(result.post_auth_cookie, "EB-HC-NEEDED")) return Verdict::kHostCheckNeeded;
    if (Holds(result.post_auth_cookie, "EB-HC-FAILED")) return Verdict::kHostCheckFailed;
  }
  return Verdict::kSignedIn;
}

// Why a step ended that proves nothing; `otherwise` when nobody ended it from outside.
Verdict Unfinished(const HelperEnd& end, Verdict otherwise) {
  if (end.timed_out) return Verdict::kTimedOut;
  if (end.stopped_by) return Verdict::kStopped;
  return otherwise;
}

std::string HowItEnded(const HelperEnd& end) {
  if (end.killed_by) return std::string("the helper was ended by: ") + strsignal(end.killed_by);
  if (end.exit_status == 0) return "the helper ended with exit status 0";
  const std::string status = std::to_string(end.exit_status);
  return "the helper ended with exit status " + status +
         (end.exit_status == 255 ? " (its catalogs or the request are unusable)" : "");
}

}  // namespace

const char* VerdictName(Verdict verdict) {
  switch (verdict) {
    case Verdict::kSignedIn:
      return "signed in";
    case Verdict::kNotStarted:
      return "not started";
    case Verdict::kRefused:
      return "refused";
    case Verdict::kHostCheckNeeded:
      return "host check needed";
    case Verdict::kHostCheckFailed:
      return "host check failed";
    case Verdict::kLoggedOut:
      return "logged out";
    case Verdict::kClosedByUser:
      return "closed by user";
    case Verdict::kTimedOut:
      return "timed out";
    case Verdict::kNothingWritten:
      return "nothing written";
    case Verdict::kCrashed:
      return "crashed";
    case Verdict::kStopped:
      return "stopped";
    case Verdict::kUnreadable:
      return "unreadable result";
  }
  return "";
}

StepOutcome Judge(StepType type, const HelperEnd& end, const std::string& text) {
  StepOutcome outcome;
  outcome.end = end;
  if (end.start_error) {
    outcome.detail = std::string("the helper cannot be executed: ") + strerror(end.start_error);
    return outcome;
  }
  if (text.empty()) {
    outcome.verdict = Unfinished(end, end.killed_by ? Verdict::kCrashed : Verdict::kNothingWritten);
    outcome.detail = HowItEnded(end) + "; its log says why";
    return outcome;
  }
  const std::optional<Result> result = Parse(text);
  if (!result) {
    outcome.verdict = Verdict::kUnreadable;
    outcome.detail = HowItEnded(end);
    return outcome;
  }
  outcome.document = text;
  if (const std::optional<Verdict> proven = Proven(type, *result)) {
    outcome.verdict = *proven;
  } else {
    const bool refused = type == StepType::kSamlLogin && !result->idp_cookies.empty();
    outcome.verdict = Unfinished(end, refused ? Verdict::kRefused : Verdict::kClosedByUser);
  }
  if (outcome.verdict == Verdict::kLoggedOut) {
    outcome.detail = "state " + std::to_string(result->slo_state);
    if (!result->idp_logout_url.empty())
      outcome.detail += ", continue at " + result->idp_logout_url;
  }
  return outcome;
}
