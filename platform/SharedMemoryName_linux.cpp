#include <unistd.h>

#include <algorithm>

#include "platform/SharedMemoryName.h"

std::string SharedMemoryName(const std::string& product_name, const std::string& install_root,
                             SharedAmong sharers) {
  std::string name = product_name;
  if (!name.empty()) std::replace(name.begin() + 1, name.end(), '/', '_');
  if (sharers == SharedAmong::kProcessesOfTheUser) name += "." + std::to_string(getuid());
  return name + StagingSuffix(install_root);
}
