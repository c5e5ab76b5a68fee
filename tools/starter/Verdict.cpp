#include "tools/starter/Verdict.h"

#include <rapidjson/document.h>

#include "tools/starter/BrowserLine.h"
#include "tools/starter/Detail.h"

namespace ebStarter {

namespace {

std::optional<ReturnData> Parse(const std::string& text) {
  rapidjson::Document document;
  if (document.Parse(text.c_str()).HasParseError() || !document.IsObject()) return std::nullopt;
  ReturnData data;
  const struct {
    const char* key;
    std::string& value;
  } texts[] = {{"postauthcookie", data.post_auth_cookie},
               {"samlidpcookies", data.idp_cookies},
               {"samlidplogoutrequesturl", data.idp_logout_url}};
  for (const auto& member : texts) {
    const auto found = document.FindMember(member.key);
    if (found == document.MemberEnd() || !found->value.IsString()) return std::nullopt;
    member.value.assign(found->value.GetString(), found->value.GetStringLength());
  }
  const auto state = document.FindMember("samlslostate");
  if (state == document.MemberEnd() || !state->value.IsInt()) return std::nullopt;
  data.slo_state = state->value.GetInt();
  return data;
}

bool Holds(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

// What the result alone proves; nothing when it proves nothing.
std::optional<Verdict> Proven(StepType type, const ReturnData& data) {
  if (type == StepType::kSamlLogout) {
    if (data.slo_state == 2 || data.slo_state == 5) return Verdict::kLoggedOut;
    return std::nullopt;
  }
  if (data.post_auth_cookie.empty()) return std::nullopt;
  if (type == StepType::kCustom) {
    if (Holds(data.post_auth_cookie, "EB-HC-NEEDED")) return Verdict::kHostCheckNeeded;
    if (Holds(data.post_auth_cookie, "EB-HC-FAILED")) return Verdict::kHostCheckFailed;
  }
  return Verdict::kSignedIn;
}

// Why a step ended that proves nothing; `otherwise` when neither its caller nor its browser ended
// it.
Verdict Unfinished(const HelperEnd& end, Verdict otherwise) {
  if (end.timed_out) return Verdict::kTimedOut;
  if (end.stopped_by) return Verdict::kStopped;
  return end.browser_failure.empty() ? otherwise : Verdict::kBrowserFailed;
}

Verdict VerdictOf(StepType type, const HelperEnd& end, const std::string& text,
                  const std::optional<ReturnData>& data) {
  if (end.start_error) return Verdict::kNotStarted;
  if (text.empty()) {
    return Unfinished(end, end.killed_by ? Verdict::kCrashed : Verdict::kNothingWritten);
  }
  if (!data) return Verdict::kUnreadable;
  if (const std::optional<Verdict> proven = Proven(type, *data)) return *proven;
  const bool refused = type == StepType::kSamlLogin && !data->idp_cookies.empty();
  return Unfinished(end, refused ? Verdict::kRefused : Verdict::kClosedByUser);
}

std::string ReasonOf(Verdict verdict, const HelperEnd& end) {
  const std::string& failure = end.browser_failure;
  const std::string& remark = end.browser_remark;
  switch (verdict) {
    case Verdict::kBrowserFailed:
      return BrowserLine(failure).reason;
    case Verdict::kTimedOut:
    case Verdict::kStopped:
      if (!failure.empty()) return BrowserLine(failure).reason;
      return remark.empty() ? "" : BrowserLine(remark).reason;
    case Verdict::kClosedByUser:
    case Verdict::kRefused:
      if (!remark.empty()) return BrowserLine(remark).reason;
      return verdict == Verdict::kClosedByUser ? "page-shown" : "";
    default:
      return "";
  }
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
    case Verdict::kBrowserFailed:
      return "browser failed";
    case Verdict::kBusy:
      return "another step is running";
  }
  return "";
}

Outcome Judge(const Settings& settings, const HelperEnd& end, const std::string& text) {
  Outcome outcome;
  outcome.end = end;
  outcome.data = Parse(text);
  if (outcome.data) outcome.json = text;
  outcome.verdict = VerdictOf(settings.request.type, end, text, outcome.data);
  outcome.reason = ReasonOf(outcome.verdict, end);
  outcome.detail = DetailOf(settings, outcome);
  return outcome;
}

}  // namespace ebStarter
