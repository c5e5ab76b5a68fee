// The browser's profile folder and who uses it.

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "cef/chromium/process/AppWindow.h"
#include "libs/kxaccess/RunPaths.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Looks.h"

namespace doctor {

namespace {

std::string ProfileFolder() { return RunPaths::FromEnvironment().browser_data; }

// Who has locked the profile: Chromium leaves a link to "host-process".
struct Owner {
  std::string host;
  pid_t process = 0;
};

Owner LockOwner() {
  std::error_code none;
  const std::string target =
      std::filesystem::read_symlink(ProfileFolder() + "/SingletonLock", none);
  const size_t dash = target.rfind('-');
  if (dash == std::string::npos) return {};
  return {target.substr(0, dash), std::atoi(target.c_str() + dash + 1)};
}

std::string HostName() {
  char name[256] = "";
  gethostname(name, sizeof name - 1);
  return name;
}

}  // namespace

Finding CheckProfile() {
  if (!getenv("HOME")) return Ok("profile", "not checked without HOME");
  const std::string folder = ProfileFolder();
  struct stat link;
  if (lstat(folder.c_str(), &link) != 0) return Ok("profile", folder + " will be created");
  const std::string odd = WhyNotOurs(folder);
  return odd.empty() ? Ok("profile", folder) : Warning("profile", odd);
}

Finding CheckProfileLock() {
  const Owner owner = LockOwner();
  if (owner.host.empty()) return Ok("profile-lock", "none");
  if (owner.host != HostName()) {
    return Warning("profile-lock", "locked by a browser on the computer " + owner.host +
                                       ", or on this one under that name");
  }
  if (IsAlive(owner.process)) return Ok("profile-lock", "held by " + ProcessText(owner.process));
  return Ok("profile-lock", "left by a browser that has died; the next run removes it");
}

Finding CheckOtherSignIn() {
  bool busy = false;
  const int connection = engine::ConnectToChromium(ProfileFolder(), &busy);
  if (connection >= 0) close(connection);
  if (!busy) return Ok("other-sign-in", "none");
  const Owner owner = LockOwner();
  return Warning("other-sign-in", "the profile is in use by " + ProcessText(owner.process));
}

}  // namespace doctor
