#include <gtest/gtest.h>

#include "tools/starter/Verdict.h"

namespace {

using namespace ebStarter;

HelperEnd Ended(int status, int killed_by, bool timed_out = false, int stopped_by = 0) {
  HelperEnd end;
  end.exit_status = status;
  end.killed_by = killed_by;
  end.timed_out = timed_out;
  end.stopped_by = stopped_by;
  return end;
}

std::string Document(const std::string& post, const std::string& idp = "", int state = 0,
                     const std::string& url = "") {
  return R"({"postauthcookie":")" + post + R"(","samlidpcookies":")" + idp +
         R"(","samlidplogoutrequesturl":")" + url + R"(","samlslostate":)" + std::to_string(state) +
         "}";
}

TEST(StarterVerdict, Table) {
  const StepType saml = StepType::kSamlLogin;
  const StepType custom = StepType::kCustom;
  const StepType logout = StepType::kSamlLogout;
  const HelperEnd exited = Ended(0, 0);
  const HelperEnd crashed = Ended(0, 11);
  const HelperEnd late = Ended(0, 0, true);
  HelperEnd browserless = exited, browserless_late = late;
  browserless.browser_failure = browserless_late.browser_failure = "Chromium has ended";
  HelperEnd missing;
  missing.start_error = 2;
  const struct {
    const char* name;
    StepType type;
    HelperEnd end;
    std::string text;
    Verdict expected;
  } cases[] = {
      {"signed in", saml, exited, Document("ID=1", "a=b"), Verdict::kSignedIn},
      {"signed in beats the limit", saml, late, Document("ID=1"), Verdict::kSignedIn},
      {"signed in beats a late crash", saml, crashed, Document("ID=1"), Verdict::kSignedIn},
      {"refused", saml, exited, Document("", "a=b"), Verdict::kRefused},
      {"limit", saml, late, Document("", "a=b"), Verdict::kTimedOut},
      {"limit, then stopped", saml, Ended(0, 0, true, 2), Document(""), Verdict::kTimedOut},
      {"limit, killed", saml, Ended(0, 9, true), "", Verdict::kTimedOut},
      {"stopped", custom, Ended(0, 0, false, 2), Document(""), Verdict::kStopped},
      {"not executable", saml, missing, "", Verdict::kNotStarted},
      {"silent", saml, exited, "", Verdict::kNothingWritten},
      {"crashed", saml, crashed, "", Verdict::kCrashed},
      {"not JSON", saml, exited, Document("ID=1") + "tail", Verdict::kUnreadable},
      {"member missing", saml, exited, R"({"postauthcookie":"ID=1"})", Verdict::kUnreadable},
      {"mistyped state", logout, exited,
       R"({"postauthcookie":"","samlidpcookies":"","samlidplogoutrequesturl":"","samlslostate":2.0})",
       Verdict::kUnreadable},
      {"browser failed half-way", saml, browserless, Document("", "a=b"), Verdict::kBrowserFailed},
      {"browser failed after it", saml, browserless, Document("ID=1"), Verdict::kSignedIn},
      {"browser failed, limit", saml, browserless_late, Document(""), Verdict::kTimedOut},
      {"custom finished", custom, exited, Document("KXEBID=a;KXID=b;"), Verdict::kSignedIn},
      {"check needed", custom, exited, Document("KXEBID=a;KXEBSTATUS=EB-HC-NEEDED;"),
       Verdict::kHostCheckNeeded},
      {"check failed", custom, exited, Document("KXEBID=a;KXEBSTATUS=EB-HC-FAILED;"),
       Verdict::kHostCheckFailed},
      {"a SAML cookie may hold such text", saml, exited, Document("ID=EB-HC-NEEDED"),
       Verdict::kSignedIn},
      {"logout, captured", logout, exited, Document("", "", 2, "https://idp/x"),
       Verdict::kLoggedOut},
      {"logout, exchange over", logout, exited, Document("", "", 5), Verdict::kLoggedOut},
      {"logout, left half-way", logout, exited, Document("", "", 4), Verdict::kClosedByUser},
  };
  for (const auto& entry : cases) {
    Settings settings;
    settings.request.type = entry.type;
    const Outcome outcome = Judge(settings, entry.end, entry.text);
    EXPECT_STREQ(VerdictName(outcome.verdict), VerdictName(entry.expected)) << entry.name;
    const bool readable = !entry.text.empty() && entry.expected != Verdict::kUnreadable;
    EXPECT_EQ(outcome.json, readable ? entry.text : "") << entry.name;
  }
}

}  // namespace
