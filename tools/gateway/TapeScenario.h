// A flow tape as a scenario: the same pages, redirects, cookies and end, with invented values.

#ifndef TOOLS_GATEWAY_TAPESCENARIO_H_
#define TOOLS_GATEWAY_TAPESCENARIO_H_

#include <string>

#include "tools/gateway/Scenario.h"
#include "tools/tape/Tape.h"

// The name that the scenario of a tape's file has: the file's, without folder and extension.
std::string TapeName(const std::string& path);

// The text of a scenario file. Throws std::runtime_error when nothing in the tape can be played.
std::string ScenarioTextOf(const tape::Tape& tape);

// Reads a tape and turns it into a scenario. Throws std::runtime_error, or ScenarioError.
Scenario ReadTapeScenario(const std::string& path);

#endif  // TOOLS_GATEWAY_TAPESCENARIO_H_
