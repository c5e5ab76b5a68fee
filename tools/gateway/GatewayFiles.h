// Where the box's own scenarios and their schema are.

#ifndef TOOLS_GATEWAY_GATEWAYFILES_H_
#define TOOLS_GATEWAY_GATEWAYFILES_H_

// Link-time constants: the program of a release build looks in the installation, every other
// program in the project's sources, so that a changed scenario needs no build.
extern const char kScenarioFolder[];
extern const char kScenarioSchema[];

#endif  // TOOLS_GATEWAY_GATEWAYFILES_H_
