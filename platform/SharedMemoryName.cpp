#include "platform/SharedMemoryName.h"

#include <cstdint>
#include <cstdio>

std::string StagingSuffix(const std::string& install_root) {
  if (install_root.empty()) return "";
  // FNV-1a: std::hash may differ from one library build to the next.
  uint32_t hash = 2166136261u;
  for (const unsigned char c : install_root) hash = (hash ^ c) * 16777619u;
  char suffix[10];
  snprintf(suffix, sizeof(suffix), ".%08x", static_cast<unsigned>(hash));
  return suffix;
}
