// The command line that Chromium is started with.

#ifndef CEF_CHROMIUM_PROCESS_CHROMIUMSWITCHES_H_
#define CEF_CHROMIUM_PROCESS_CHROMIUMSWITCHES_H_

#include <string>
#include <utility>
#include <vector>

namespace engine {

// Names without dashes, and values; "" = none.
using Switches = std::vector<std::pair<std::string, std::string>>;

// The arguments (without the program) for a Chromium on the profile: the built-in switches, then
// the wanted ones. Each switch appears once, since of repeated ones Chromium heeds only the last:
// lists (features) are joined, otherwise the last wanted value wins. The switches this folder's
// code relies on (pipe, profile, no first window) cannot be replaced.
std::vector<std::string> ChromiumArguments(const std::string& profile_dir, const Switches& wanted,
                                           bool small_shared_memory);

// True if the shared-memory folder has too little room for a renderer, as in many containers.
bool SharedMemoryIsSmall(const char* folder = "/dev/shm");

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_CHROMIUMSWITCHES_H_
