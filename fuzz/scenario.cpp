// Scenario files of the gateway box; a base of theirs may be any of the box's own.

#include <filesystem>

#include "fuzz/Fuzz.h"
#include "tests/support/TempDir.h"
#include "tools/gateway/GatewayFiles.h"
#include "tools/gateway/Scenarios.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TempDir* folder = nullptr;
  const std::string path = WrittenFile(Text(data, size));
  if (!folder) {
    static TempDir made;
    folder = &made;
    for (const auto& entry : std::filesystem::directory_iterator(ScenarioFolder())) {
      create_symlink(entry.path(), made.file(entry.path().filename()));
    }
    std::filesystem::create_symlink(path, made.file("fuzz.json"));
  }
  try {
    Require(ReadScenario(folder->path(), "fuzz").pages.count(kStartPage) == 1);
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
