#include "tools/gateway/ScenarioList.h"

#include <algorithm>

#include "tools/gateway/Pages.h"

namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string Options(const Scenario& scenario, const std::string& address) {
  return "--type " + scenario.step + " --url " + Quoted(address) + " --cookie " +
         Quoted(scenario.cookie) + " --timeout " + std::to_string(scenario.timeout);
}

std::string Padded(std::string text, size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text + "  ";
}

}  // namespace

std::string StartAddress(const Scenario& scenario, const Ports& ports, bool automatic) {
  const auto fault = scenario.certificates.find("gateway");
  const std::string name =
      (fault == scenario.certificates.end() ? "" : fault->second + ".") + "gateway.localhost";
  return (scenario.https ? "https://" : "http://") + name + ":" +
         std::to_string(scenario.https ? ports.https : ports.http) + "/" + scenario.name +
         "/start" + (automatic ? "?auto=1" : "");
}

std::string IndexPage(const std::vector<Scenario>& scenarios, const Ports& ports) {
  std::string body =
      "<p>A VPN gateway, an identity provider and a third host in one program. Each line is one "
      "step; with <code>?auto=1</code> its forms fill themselves in.</p><table><tr><th>Scenario"
      "<th>What happens<th>It ends in<th>Options for the starter";
  for (const Scenario& scenario : scenarios) {
    const std::string address = StartAddress(scenario, ports);
    body += "<tr><td><a href=\"" + EscapeHtml(address) + "\">" + scenario.name + "</a>";
    if (scenario.automatic) body += " <a href=\"" + EscapeHtml(address) + "?auto=1\">auto</a>";
    body += "<td>" + EscapeHtml(scenario.description) + "<td>" + scenario.expect.verdict +
            "<td><code>" + EscapeHtml(Options(scenario, address)) + "</code>";
  }
  return Page(Look::kGateway, "Gateway in a box",
              body + "</table><p class=hint><a href=\"/-/requests\">Requests so far</a></p>");
}

std::string ListText(const std::vector<Scenario>& scenarios) {
  size_t width = 0;
  for (const Scenario& scenario : scenarios) width = std::max(width, scenario.name.size());
  std::string text;
  for (const Scenario& scenario : scenarios) {
    text += Padded(scenario.name, width) + Padded(scenario.step, sizeof "saml-logout" - 1) +
            scenario.description + "\n";
  }
  return text;
}

std::string StarterCommandLine(const Scenario& scenario, const Ports& ports) {
  return "embedded-browser-start " +
         Options(scenario, StartAddress(scenario, ports, scenario.automatic));
}
