#include "testing/gateway/Pages.h"
#include "testing/gateway/Roles.h"
#include "testing/gateway/Scenarios.h"

namespace {

constexpr char kLogoutPage[] = "/vora-na/auth/logout.cgi";
constexpr char kWelcomePage[] = "/vora-na/auth/welcome.cgi";
constexpr char kRequest[] = "SAMLRequest=PHNhbWxwOkxvZ291dFJlcXVlc3QvPg";
constexpr char kResponse[] = "SAMLResponse=PHNhbWxwOkxvZ291dFJlc3BvbnNlLz4";
constexpr int kPauseMs = 200;

std::string Slo(const Visit& visit, const char* host, const std::string& step_and_query) {
  return visit.Address(host, "/slo/" + step_and_query);
}

// A blank frame and a picture of a third host: neither may move the logout on.
std::string Distractions(const Visit& visit) {
  const std::string pixel = visit.Address(kThirdHost, "/pixel.gif");
  return "<iframe class=pixel src=\"about:blank\"></iframe><img class=pixel alt=\"\" src=\"" +
         EscapeHtml(pixel) + "\">";
}

void Begin(Visit& visit, const std::string& scenario) {
  const std::string next =
      scenario == "state2"
          ? visit.Address(kGatewayHost, kLogoutPage)
          : Slo(visit, kIdentityProviderHost, scenario + "?" + kRequest + "&RelayState=box");
  visit.Page(PassingPage(Look::kGateway, "Signing out", "Your VPN session is being ended.", next,
                         kPauseMs, Distractions(visit)));
}

bool ServeGateway(Visit& visit) {
  const std::string scenario = visit.Behind("/logout/");
  if (!scenario.empty() && IsScenario(visit.path())) {
    Begin(visit, scenario);
  } else if (visit.path() == kLogoutPage) {
    visit.Page(PassingPage(
        Look::kGateway, "Signed out of the VPN", "Your identity provider is told.",
        Slo(visit, kIdentityProviderHost, std::string("state2?") + kRequest + "&RelayState=box"),
        kPauseMs));
  } else if (visit.path() == kWelcomePage) {
    visit.Redirect(Slo(visit, kIdentityProviderHost, "goodbye?target=welcome.cgi"));
  } else {
    return false;
  }
  return true;
}

// The exchange from the identity provider's side: request, an address that must be ignored for the
// "about:blank" it holds, response by way of the third host, the welcome page.
bool ServeOthers(Visit& visit) {
  const std::string step = visit.Behind("/slo/");
  if (step == "state2") {
    visit.Page(Notice(Look::kIdentityProvider, "Signed out", "Your sessions have been ended."));
  } else if (step == "never") {
    visit.Page(Notice(Look::kIdentityProvider, "Signing out", "Waiting for other services."));
  } else if (step == "state5") {
    visit.Redirect(Slo(visit, kThirdHost, std::string("blank?from=about:blank&") + kResponse));
  } else if (step == "blank") {
    visit.Page(PassingPage(Look::kThird, "Other service", "Signed out here, too.",
                           Slo(visit, kThirdHost, std::string("response?") + kResponse), kPauseMs));
  } else if (step == "response") {
    // Over HTTPS this address is on the gateway and does not count as the welcome page.
    visit.Redirect(visit.Address(kGatewayHost, kWelcomePage));
  } else if (step == "goodbye") {
    visit.Page(Notice(Look::kIdentityProvider, "Goodbye", "You are signed out everywhere."));
  } else {
    return false;
  }
  return true;
}

}  // namespace

bool ServeSamlLogout(Visit& visit) {
  if (visit.role() == Role::kGateway) return ServeGateway(visit);
  return visit.role() != Role::kNone && ServeOthers(visit);
}
