#include "platform/SharedMemoryName.h"

namespace {

// PSHMNAMLEN, which no public header declares.
constexpr size_t kLongestName = 31;

}  // namespace

std::string SharedMemoryName(const std::string& product_name, const std::string& install_root,
                             SharedAmong) {
  // What is cut off belongs to the tail that all names share: they stay different.
  const std::string suffix = StagingSuffix(install_root);
  return product_name.substr(0, kLongestName - suffix.size()) + suffix;
}
