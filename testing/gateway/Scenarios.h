// What the box can play: one table, from which the index page, the roles and the tests take it.

#ifndef TESTING_GATEWAY_SCENARIOS_H_
#define TESTING_GATEWAY_SCENARIOS_H_

#include <string>
#include <vector>

struct Scenario {
  const char* path;           // where it begins, on the gateway
  const char* type;           // the starter's name for the kind of step
  const char* launch_cookie;  // what the VPN client would plant; may be empty
  const char* description;    // one line for people
};

const std::vector<Scenario>& Scenarios();

// True when `path` begins a scenario of the table.
bool IsScenario(const std::string& path);

// The page that lists them all, with links and the options for the starter. `origin` is the
// gateway's scheme, host and port.
std::string IndexPage(const std::string& origin);

#endif  // TESTING_GATEWAY_SCENARIOS_H_
