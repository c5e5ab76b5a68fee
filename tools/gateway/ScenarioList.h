// The scenarios as people see them: on the index page, in a terminal, as a command.

#ifndef TOOLS_GATEWAY_SCENARIOLIST_H_
#define TOOLS_GATEWAY_SCENARIOLIST_H_

#include <string>
#include <vector>

#include "tools/gateway/Scenario.h"

struct Ports {
  int http = 0;
  int https = 0;
};

// The address that begins a scenario.
std::string StartAddress(const Scenario& scenario, const Ports& ports, bool automatic = false);

// The page that lists the scenarios, with links, what each ends in, and the starter's options.
std::string IndexPage(const std::vector<Scenario>& scenarios, const Ports& ports);

// A table of name, step and description, one line each.
std::string ListText(const std::vector<Scenario>& scenarios);

// The starter's command line for a scenario, as a shell takes it.
std::string StarterCommandLine(const Scenario& scenario, const Ports& ports);

#endif  // TOOLS_GATEWAY_SCENARIOLIST_H_
