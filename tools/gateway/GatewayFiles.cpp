#include "tools/gateway/GatewayFiles.h"

const char kScenarioFolder[] = EB_GATEWAY_FILES "/scenarios";
const char kScenarioSchema[] = EB_GATEWAY_FILES "/scenario.schema.json";
