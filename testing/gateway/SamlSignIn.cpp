#include "testing/gateway/Pages.h"
#include "testing/gateway/Roles.h"
#include "testing/gateway/Scenarios.h"

namespace {

constexpr char kLaunchCookie[] = "KXSAMLEMBID";
constexpr char kFlowCookie[] = "KXSAMLFLOW";
constexpr int kSlowAnswerMs = 1500;

// Stand-ins for the two SAML documents; nobody here looks inside.
constexpr char kSamlRequest[] = "PHNhbWxwOkF1dGhuUmVxdWVzdC8-";
constexpr char kSamlResponse[] = "PHNhbWxwOlJlc3BvbnNlLz4";

void Refuse(Visit& visit, const std::string& why) {
  visit.Page(Notice(Look::kGateway, "Sign-in not possible", why), 403);
}

// The gateway's sign-in address: on to the identity provider, by redirect or by a posted form.
void Begin(Visit& visit, const std::string& scenario) {
  if (visit.Cookie(kLaunchCookie).empty()) {
    return Refuse(visit, "The launch cookie KXSAMLEMBID has not come with this request.");
  }
  const std::string flow = RandomToken();
  visit.SetCookie(kFlowCookie, flow, "; HttpOnly");
  const std::string sso = visit.Address(kIdentityProviderHost, "/sso/" + scenario);
  if (scenario == "post") {
    visit.Page(PostingPage(
        Look::kGateway, "Going to your identity provider", sso,
        {{"SAMLRequest", kSamlRequest}, {"RelayState", flow}, {"auto", visit.Parameter("auto")}}));
  } else {
    visit.Redirect(sso + "?SAMLRequest=" + kSamlRequest + "&RelayState=" + flow + "&" +
                   visit.Automatic());
  }
}

// The assertion consumer. What it sets is seen by the browser's owner on the next request.
void Consume(Visit& visit, const std::string& scenario, const Delay& delay) {
  if (visit.Parameter("SAMLResponse").empty()) return Refuse(visit, "No SAMLResponse was posted.");
  if (visit.Cookie(kLaunchCookie).empty()) return Refuse(visit, "The launch cookie got lost.");
  const std::string flow = visit.Cookie(kFlowCookie);
  if (flow.empty() || flow != visit.Parameter("RelayState")) {
    return Refuse(visit, "This answer belongs to another sign-in.");
  }
  if (scenario == "slow") delay(kSlowAnswerMs);
  visit.SetCookie("KXSAMLEBSTATEID", RandomToken());
  visit.SetCookie("KXSAMLEBSTATUS", scenario == "refused" ? "0" : "1");
  visit.Redirect(visit.Address(kGatewayHost, "/saml/" + scenario + "/done"));
}

// The identity provider's form. Its cookies are of every kind that a real one sets.
void AskUser(Visit& visit, const std::string& scenario, const std::string& error) {
  if (visit.Cookie("IDPSESSION").empty()) {
    visit.SetCookie("IDPSESSION", RandomToken(), "; HttpOnly");
    visit.SetCookie("IDPLANG", "en");
    visit.SetCookie("IDPDEVICE", "box", "; Max-Age=86400");
  }
  const std::string pixel = visit.Address(kThirdHost, "/pixel.gif");
  visit.Page(SignInPage({Look::kIdentityProvider,
                         "Sign in to your account",
                         "/sso/" + scenario + "/sign-in",
                         {{"RelayState", visit.Parameter("RelayState")}},
                         visit.signs_in_by_itself() && scenario != "never" && error.empty(),
                         error,
                         "<img class=pixel alt=\"\" src=\"" + EscapeHtml(pixel) + "\">"}));
}

void SignIn(Visit& visit, const std::string& scenario) {
  if (visit.Cookie("IDPSESSION").empty()) {
    return visit.Page(Notice(Look::kIdentityProvider, "Session lost",
                             "The cookies of the sign-in page have not come back."),
                      403);
  }
  if (visit.Parameter("user") != kUser || visit.Parameter("password") != kPassword) {
    return AskUser(visit, scenario, "That user name and password do not belong together.");
  }
  visit.SetCookie("IDPUSER", kUser, "; HttpOnly");
  visit.Page(PostingPage(
      Look::kIdentityProvider, "You are signed in",
      visit.Address(kGatewayHost, "/saml/" + scenario + "/acs"),
      {{"SAMLResponse", kSamlResponse}, {"RelayState", visit.Parameter("RelayState")}}));
}

bool ServeGateway(Visit& visit, const Delay& delay) {
  if (IsScenario(visit.path()) && !visit.Behind("/saml/").empty()) {
    Begin(visit, visit.Behind("/saml/"));
    return true;
  }
  const std::string rest = visit.Behind("/saml/");
  const size_t slash = rest.find('/');
  if (slash == std::string::npos || !IsScenario("/saml/" + rest.substr(0, slash))) return false;
  const std::string scenario = rest.substr(0, slash);
  if (rest.substr(slash) == "/acs" && visit.is_post()) {
    Consume(visit, scenario, delay);
  } else if (rest.substr(slash) == "/done") {
    const bool good = visit.Cookie("KXSAMLEBSTATUS") == "1";
    visit.Page(Notice(Look::kGateway, good ? "Signed in" : "Access refused",
                      good ? "You may close this window." : "Your account may not use this VPN."));
  } else {
    return false;
  }
  return true;
}

}  // namespace

bool ServeSamlSignIn(Visit& visit, const Delay& delay) {
  if (visit.role() == Role::kGateway) return ServeGateway(visit, delay);
  if (visit.role() != Role::kIdentityProvider) return false;
  const std::string rest = visit.Behind("/sso/");
  const std::string scenario = rest.substr(0, rest.find('/'));
  if (!IsScenario("/saml/" + scenario)) return false;
  if (rest == scenario) {
    AskUser(visit, scenario, "");
  } else if (rest == scenario + "/sign-in" && visit.is_post()) {
    SignIn(visit, scenario);
  } else {
    return false;
  }
  return true;
}
