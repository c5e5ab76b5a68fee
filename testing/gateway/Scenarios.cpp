#include "testing/gateway/Scenarios.h"

#include "testing/gateway/Pages.h"

namespace {

constexpr char kSaml[] = "KXSAMLEMBID=box";
constexpr char kCustom[] = "KXEBID=box;KXEBSTATUS=EB-LAUNCH";
constexpr char kLogout[] = "KXID=box;;KXFIRST=a=b";

}  // namespace

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario> table = {
      {"/saml/ok", "saml-login", kSaml, "signs in at the identity provider, by redirects"},
      {"/saml/post", "saml-login", kSaml, "the same, the request posted to the identity provider"},
      {"/saml/slow", "saml-login", kSaml, "the same, the gateway's answer takes a while"},
      {"/saml/refused", "saml-login", kSaml, "the gateway refuses who has signed in"},
      {"/saml/never", "saml-login", kSaml, "the user never signs in"},
      {"/custom/finished", "custom", kCustom, "signs in at the gateway's own page"},
      {"/custom/hc-needed", "custom", kCustom, "the gateway wants a host check"},
      {"/custom/hc-failed", "custom", kCustom, "the host check has failed"},
      {"/custom/invalid-first", "custom", kCustom, "an invalid answer first, then a good one"},
      {"/custom/never", "custom", kCustom, "the user never signs in"},
      {"/logout/state2", "saml-logout", kLogout,
       "the gateway's logout page hands over to the identity provider; needs HTTPS"},
      {"/logout/state5", "saml-logout", kLogout,
       "the identity provider is asked at once, and the exchange runs to its end"},
      {"/logout/never", "saml-logout", kLogout, "the identity provider never answers"},
  };
  return table;
}

bool IsScenario(const std::string& path) {
  for (const Scenario& scenario : Scenarios()) {
    if (path == scenario.path) return true;
  }
  return false;
}

std::string IndexPage(const std::string& origin) {
  std::string body =
      "<p>A VPN gateway, an identity provider and a third host in one program. Each line is one "
      "step; with <code>?auto=1</code> its forms fill themselves in.</p><table><tr><th>Address"
      "<th>What happens<th>Options for the starter";
  for (const Scenario& scenario : Scenarios()) {
    const std::string address = EscapeHtml(origin + scenario.path);
    body += "<tr><td><a href=\"" + address + "\">" + scenario.path + "</a><td>" +
            EscapeHtml(scenario.description) + "<td><code>--type " + scenario.type + " --url " +
            address + " --cookie '" + EscapeHtml(scenario.launch_cookie) + "'</code>";
  }
  return Page(Look::kGateway, "Gateway in a box",
              body + "</table><p class=hint><a href=\"/-/requests\">Requests so far</a></p>");
}
