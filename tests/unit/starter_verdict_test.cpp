#include <gtest/gtest.h>

#include "tools/starter/Verdict.h"

namespace {

HelperEnd Exited(int status) {
  HelperEnd end;
  end.exit_status = status;
  return end;
}

HelperEnd Killed(int signal_number) {
  HelperEnd end;
  end.killed_by = signal_number;
  return end;
}

HelperEnd TimedOut(HelperEnd end) {
  end.timed_out = true;
  return end;
}

HelperEnd Stopped(HelperEnd end) {
  end.stopped_by = 2;
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
  HelperEnd missing;
  missing.start_error = 2;
  const struct {
    const char* name;
    StepType type;
    HelperEnd end;
    std::string text;
    Verdict expected;
  } cases[] = {
      {"signed in", saml, Exited(0), Document("ID=1", "a=b"), Verdict::kSignedIn},
      {"signed in beats the limit", saml, TimedOut(Exited(0)), Document("ID=1"),
       Verdict::kSignedIn},
      {"signed in beats a late crash", saml, Killed(11), Document("ID=1"), Verdict::kSignedIn},
      {"refused", saml, Exited(0), Document("", "a=b"), Verdict::kRefused},
      {"closed", saml, Exited(0), Document(""), Verdict::kClosedByUser},
      {"limit", saml, TimedOut(Exited(0)), Document("", "a=b"), Verdict::kTimedOut},
      {"limit, killed", saml, TimedOut(Killed(9)), "", Verdict::kTimedOut},
      {"stopped", custom, Stopped(Exited(0)), Document(""), Verdict::kStopped},
      {"stopped in the first moment", saml, Stopped(Killed(2)), "", Verdict::kStopped},
      {"not executable", saml, missing, "", Verdict::kNotStarted},
      {"silent", saml, Exited(0), "", Verdict::kNothingWritten},
      {"unusable request", saml, Exited(255), "", Verdict::kNothingWritten},
      {"crashed", saml, Killed(11), "", Verdict::kCrashed},
      {"not JSON", saml, Exited(0), Document("ID=1") + "tail", Verdict::kUnreadable},
      {"cut", saml, Exited(0), Document("ID=1").substr(0, 30), Verdict::kUnreadable},
      {"member missing", saml, Exited(0), R"({"postauthcookie":"ID=1"})", Verdict::kUnreadable},
      {"mistyped state", logout, Exited(0),
       R"({"postauthcookie":"","samlidpcookies":"","samlidplogoutrequesturl":"","samlslostate":2.0})",
       Verdict::kUnreadable},
      {"not an object", saml, Exited(0), "[]", Verdict::kUnreadable},
      {"custom finished", custom, Exited(0), Document("KXEBID=a;KXID=b;"), Verdict::kSignedIn},
      {"check needed", custom, Exited(0), Document("KXEBID=a;KXEBSTATUS=EB-HC-NEEDED;"),
       Verdict::kHostCheckNeeded},
      {"check failed", custom, Exited(0), Document("KXEBID=a;KXEBSTATUS=EB-HC-FAILED;"),
       Verdict::kHostCheckFailed},
      {"a SAML cookie may hold such text", saml, Exited(0), Document("ID=EB-HC-NEEDED"),
       Verdict::kSignedIn},
      {"custom closed", custom, Exited(0), Document(""), Verdict::kClosedByUser},
      {"logout, captured", logout, Exited(0), Document("", "", 2, "https://idp/x"),
       Verdict::kLoggedOut},
      {"logout, exchange over", logout, Exited(0), Document("", "", 5), Verdict::kLoggedOut},
      {"logout, left half-way", logout, Exited(0), Document("", "", 4), Verdict::kClosedByUser},
      {"logout, limit", logout, TimedOut(Exited(0)), Document(""), Verdict::kTimedOut},
  };
  for (const auto& entry : cases) {
    const StepOutcome outcome = Judge(entry.type, entry.end, entry.text);
    EXPECT_STREQ(VerdictName(outcome.verdict), VerdictName(entry.expected)) << entry.name;
    const bool readable = !entry.text.empty() && entry.expected != Verdict::kUnreadable;
    EXPECT_EQ(outcome.document, readable ? entry.text : "") << entry.name;
  }
}

TEST(StarterVerdict, LogoutTellsStateAndAddress) {
  EXPECT_EQ(Judge(StepType::kSamlLogout, Exited(0), Document("", "", 2, "https://idp/x")).detail,
            "state 2, continue at https://idp/x");
  EXPECT_EQ(Judge(StepType::kSamlLogout, Exited(0), Document("", "", 5)).detail, "state 5");
}

}  // namespace
