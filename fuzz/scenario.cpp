// Scenario files of the gateway box; a base of theirs may be any of the box's own.

#include "fuzz/Fuzz.h"
#include "tools/gateway/GatewayFiles.h"
#include "tools/gateway/Scenarios.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    Require(ParseScenario(ScenarioFolder(), "fuzz", Text(data, size)).pages.count(kStartPage) == 1);
  } catch (const ScenarioError&) {
  }
  return 0;
}

// Deep nesting; texts too long for regular expressions.
void ForEachCase(const std::function<void(const std::string&)>& run) {
  run(std::string(1 << 18, '[') + std::string(1 << 18, ']'));
  const std::string before = R"({"description":"d","step":"custom","expect":{"verdict":"Closed",)";
  const std::string deep(1 << 18, '(');
  run(before + R"("postauthcookie":")" + deep + R"("},"pages":{"gateway/start":{"title":"t"}}})");
  run(before + R"("samlslostate":0},"pages":{"gateway/)" + deep + R"(":{"title":"t"}}})");
}
