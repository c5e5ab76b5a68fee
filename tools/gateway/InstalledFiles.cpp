// By the program's own place, so that an installation can be moved.

#include <filesystem>

#include "tools/gateway/GatewayFiles.h"

namespace {

std::string File(const char* name) {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (program.parent_path() / EB_FILES_FROM_PROGRAM / name).lexically_normal();
}

}  // namespace

std::string ScenarioFolder() { return File("scenarios"); }
std::string ScenarioSchema() { return File("scenario.schema.json"); }
