// The names under which the product's POSIX shared-memory objects really live.

#ifndef PLATFORM_SHAREDMEMORYNAME_H_
#define PLATFORM_SHAREDMEMORYNAME_H_

#include <string>

enum class SharedAmong { kAllUsers, kProcessesOfTheUser };

// Maps a product name, "/folder/object", to a name that the system accepts for shm_open: Linux
// allows no slash after the first and gets "_" instead, macOS limits the whole name to 31 bytes.
//
// `install_root` is the folder that stages the build. When it is not empty the name gets a suffix
// that follows from it, so that a staged build shares no object with an installed product, nor with
// a build staged elsewhere. An empty one leaves the product's name as it is known to others.
//
// On Linux the name of an object that is one user's own gets the real user's id as well, since all
// users' objects lie in one folder. macOS has no room for it.
std::string SharedMemoryName(const std::string& product_name, const std::string& install_root,
                             SharedAmong sharers);

// The suffix for a staging folder: "." and eight hexadecimal digits, the same in every process and
// every build; empty for an empty folder.
std::string StagingSuffix(const std::string& install_root);

#endif  // PLATFORM_SHAREDMEMORYNAME_H_
