// The developer tools' port, and what the system allows a process.

#include <sys/resource.h>
#include <unistd.h>

#include <string>

#include "GUI/cefBrowser/CefBrowserClient.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Looks.h"

namespace doctor {

namespace {

// The least that a browser with a few processes and many threads gets along with. The number of
// processes does not bind root.
struct Need {
  int resource;
  rlim_t least;
  bool binds_root;
  const char* name;
};
constexpr Need kNeeds[] = {
    {RLIMIT_NOFILE, 512, true, "open files"},
    {RLIMIT_NPROC, 512, false, "processes"},
    {RLIMIT_AS, rlim_t{1} << 42, true, "bytes of address space"},
    {RLIMIT_FSIZE, rlim_t{100} << 20, true, "bytes in a file"},
};

}  // namespace

Finding CheckDeveloperPort() {
  const std::string listener = ListenerOn(kDevToolsPort);
  const std::string port = "port " + std::to_string(kDevToolsPort);
  if (listener.empty()) return Ok("developer-port", port + " is free");
  return Warning("developer-port", port + " is taken by " + listener);
}

Finding CheckProcessLimits() {
  for (const Need& need : kNeeds) {
    rlimit limit;
    if (getrlimit(static_cast<__rlimit_resource_t>(need.resource), &limit) != 0) continue;
    if (!need.binds_root && geteuid() == 0) continue;
    // A browser raises its own limit as far as it may.
    const rlim_t allowed = need.resource == RLIMIT_NOFILE ? limit.rlim_max : limit.rlim_cur;
    if (allowed >= need.least) continue;
    return Warning("process-limits", "only " + std::to_string(allowed) + " " + need.name);
  }
  return Ok("process-limits", geteuid() == 0 ? "high enough; runs as root" : "high enough");
}

}  // namespace doctor
