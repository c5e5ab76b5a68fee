// The scenarios of a folder, read and checked.

#ifndef TOOLS_GATEWAY_SCENARIOS_H_
#define TOOLS_GATEWAY_SCENARIOS_H_

#include <string>
#include <vector>

#include "tools/gateway/Scenario.h"
#include "tools/gateway/ScenarioDocument.h"

// Reads FOLDER/NAME.json. Throws ScenarioError when the file, or a base of it, cannot be used.
Scenario ReadScenario(const std::string& folder, const std::string& name);
// The same, given the file's text.
Scenario ParseScenario(const std::string& folder, const std::string& name, const std::string& text);

// Reads all of a folder, in the order of their names. Throws ScenarioError for the first that
// cannot be used, and when there is none.
std::vector<Scenario> ReadScenarios(const std::string& folder);

#endif  // TOOLS_GATEWAY_SCENARIOS_H_
