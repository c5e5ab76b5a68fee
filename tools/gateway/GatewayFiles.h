// Where the box's own scenarios and their schema are.
//
// The program finds them from its own place (InstalledFiles.cpp); what else is linked with the box
// looks in the project's sources (GatewayFiles.cpp). Either way a changed scenario needs no build.

#ifndef TOOLS_GATEWAY_GATEWAYFILES_H_
#define TOOLS_GATEWAY_GATEWAYFILES_H_

#include <string>

// Absolute paths, UTF-8. They may name what does not exist. Any thread.
std::string ScenarioFolder();
std::string ScenarioSchema();

#endif  // TOOLS_GATEWAY_GATEWAYFILES_H_
