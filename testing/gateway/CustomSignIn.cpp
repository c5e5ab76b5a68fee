#include "testing/gateway/Pages.h"
#include "testing/gateway/Roles.h"
#include "testing/gateway/Scenarios.h"

namespace {

constexpr int kRetryMs = 300;

void AskUser(Visit& visit, const std::string& scenario, const std::string& error) {
  if (visit.Cookie("KXEBID").empty()) visit.SetCookie("KXEBID", RandomToken());
  visit.Page(SignInPage({Look::kGateway,
                         "Sign in to the VPN",
                         "/custom/" + scenario + "/sign-in",
                         {{"auto", visit.Parameter("auto")}},
                         visit.signs_in_by_itself() && scenario != "never" && error.empty(),
                         error,
                         ""}));
}

// The answer to the right password: cookies that say how it ended, noticed on the next request.
void Decide(Visit& visit, const std::string& scenario) {
  std::string next = "/end";
  if (scenario == "hc-needed") {
    visit.SetCookie("KXEBSTATUS", "EB-HC-NEEDED");
  } else if (scenario == "hc-failed") {
    visit.SetCookie("KXEBSTATUS", "EB-HC-FAILED");
  } else {
    visit.SetCookie("KXEBSTATUS", "EB-FINISHED");
    if (scenario == "invalid-first") {
      next = "/almost";
    } else {
      visit.SetCookie("KXID", RandomToken(), "; HttpOnly");
    }
  }
  visit.Redirect(visit.Address(kGatewayHost, "/custom/" + scenario + next));
}

}  // namespace

bool ServeCustomSignIn(Visit& visit) {
  const std::string rest = visit.Behind("/custom/");
  const size_t slash = rest.find('/');
  const std::string scenario = rest.substr(0, slash);
  if (visit.role() != Role::kGateway || !IsScenario("/custom/" + scenario)) return false;
  const std::string page = slash == std::string::npos ? "" : rest.substr(slash);
  if (page.empty()) {
    AskUser(visit, scenario, "");
  } else if (page == "/sign-in" && visit.is_post()) {
    if (visit.Parameter("user") == kUser && visit.Parameter("password") == kPassword) {
      Decide(visit, scenario);
    } else {
      AskUser(visit, scenario, "That user name and password do not belong together.");
    }
  } else if (page == "/almost") {
    // Finished by its status, yet without the session cookie: must be ignored by who watches.
    visit.Page(PassingPage(Look::kGateway, "Almost there", "Your session is being made.",
                           visit.Address(kGatewayHost, "/custom/" + scenario + "/session"),
                           kRetryMs));
  } else if (page == "/session") {
    visit.SetCookie("KXID", RandomToken(), "; HttpOnly");
    visit.Redirect(visit.Address(kGatewayHost, "/custom/" + scenario + "/end"));
  } else if (page == "/end") {
    visit.Page(Notice(Look::kGateway, "Done", "You may close this window."));
  } else {
    return false;
  }
  return true;
}
