// Which Chromium there is on this machine: Chromium itself, or a browser that is made of it.

#ifndef CEF_CHROMIUM_PROCESS_INSTALLEDCHROMIUM_H_
#define CEF_CHROMIUM_PROCESS_INSTALLEDCHROMIUM_H_

#include <string>
#include <vector>

namespace engine {

struct InstalledChromium {
  std::string path;
  // Where the administrator's policies for it are.
  std::string policy_folder;
};

// Those that can be executed, best first: programs before commands, so that a command which only
// tells how to install a browser hides none. Only usual places of the system are looked at: no
// environment variable has a say, PATH neither, so that a caller's environment cannot choose what
// is given the cookies. Empty and a reason in *err when there is none.
std::vector<InstalledChromium> FindChromiums(std::string* err);

// Why the administrator does not let others drive that Chromium: a text that names the policy and
// its file; "" if nothing is known against it. Policies from elsewhere than the folder (a managed
// account) do not show here.
std::string ForbiddingPolicy(const InstalledChromium& chromium);

// The policies in that folder, each as "NAME in FILE", without their values; for a file that cannot
// be understood "FILE cannot be read".
std::vector<std::string> PolicyNames(const InstalledChromium& chromium);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_INSTALLEDCHROMIUM_H_
