#include "libs/kxaccess/RunPaths.h"

#include <cstdlib>

#include "libs/kxaccess/InstallPaths.h"

RunPaths RunPaths::FromEnvironment() {
  const char* home = std::getenv("HOME");
  if (!home) return {"/tmp", "/tmp", "/tmp"};
  const std::string data_folder = std::string(home) + InstallPaths::kDataFolderUnderHome;
  return {data_folder, data_folder + "cef", data_folder + "cef_browser.log"};
}
