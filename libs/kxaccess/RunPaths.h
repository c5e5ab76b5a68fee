// The folders and files of one run that lie below the user's home.

#ifndef LIBS_KXACCESS_RUNPATHS_H_
#define LIBS_KXACCESS_RUNPATHS_H_

#include <string>

struct RunPaths {
  std::string channel;       // names the shared-memory segment; ends in a slash below a home
  std::string browser_data;  // CEF's cache, root cache and user data
  std::string browser_log;

  // Reads HOME once. Without it every path is "/tmp".
  static RunPaths FromEnvironment();
};

#endif  // LIBS_KXACCESS_RUNPATHS_H_
