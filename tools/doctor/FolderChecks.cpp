// The user's folders and the temporary one.

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "cef/chromium/process/PrivateFolder.h"
#include "libs/kxaccess/RunPaths.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Looks.h"

namespace doctor {

namespace {

constexpr unsigned long long kMegabyte = 1 << 20;
// A profile grows to some tens of megabytes. No failure: without room for it a run takes a profile
// in the temporary folder.
constexpr unsigned long long kLittleSpace = 50 * kMegabyte;
constexpr size_t kTrialBytes = 64 << 10;

}  // namespace

Finding CheckHome() {
  const char* home = getenv("HOME");
  if (!home || !*home) return Failure("home", "HOME is not set");
  if (home[0] != '/') return Failure("home", std::string("HOME is not absolute: ") + home);
  const std::string problem = WhyNoFolder(home);
  if (!problem.empty()) return Failure("home", problem);
  return Ok("home", home);
}

Finding CheckDataFolder() {
  if (!getenv("HOME")) return Ok("data-folder", "not checked without HOME");
  const std::string folder = RunPaths::FromEnvironment().channel;
  const std::string problem = WhyNoFolder(folder);
  if (!problem.empty()) return Failure("data-folder", problem);
  struct stat info;
  if (stat(folder.c_str(), &info) != 0) return Ok("data-folder", folder + " will be created");
  const std::string odd = WhyNotOurs(folder);
  return odd.empty() ? Ok("data-folder", folder) : Warning("data-folder", odd);
}

Finding CheckDiskSpace() {
  const std::string folder = NearestExisting(RunPaths::FromEnvironment().channel);
  struct statvfs info;
  if (statvfs(folder.c_str(), &info) != 0) {
    return Warning("disk-space", folder + ": " + strerror(errno));
  }
  const unsigned long long room = static_cast<unsigned long long>(info.f_bavail) * info.f_frsize;
  const std::string found = std::to_string(room / kMegabyte) + " MB free in " + folder;
  if (room < kLittleSpace) return Warning("disk-space", found);
  return Ok("disk-space", found);
}

Finding CheckTemporaryFolder() {
  const std::string folder = engine::TemporaryFolder();
  const std::string trial = engine::MakePrivateFolder(folder + "/embedded-browser-doctor", nullptr);
  if (trial.empty()) {
    return Failure("temporary-folder",
                   "cannot create anything in " + folder + ": " + strerror(errno));
  }
  std::ofstream file(trial + "/trial");
  file << std::string(kTrialBytes, '.') << std::flush;
  const bool written = file.good();
  file.close();
  engine::RemoveTree(trial);
  // A run then still works on its profile below the home folder.
  if (!written) return Warning("temporary-folder", "cannot write anything in " + folder);
  return Ok("temporary-folder", folder);
}

}  // namespace doctor
