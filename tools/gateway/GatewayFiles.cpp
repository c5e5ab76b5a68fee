#include "tools/gateway/GatewayFiles.h"

std::string ScenarioFolder() { return EB_GATEWAY_FILES "/scenarios"; }
std::string ScenarioSchema() { return EB_GATEWAY_FILES "/scenario.schema.json"; }
