// One archive for whoever is asked for help.

#ifndef TOOLS_DOCTOR_BUNDLE_H_
#define TOOLS_DOCTOR_BUNDLE_H_

#include <functional>
#include <string>
#include <vector>

#include "tools/doctor/Finding.h"

namespace doctor {

// Makes all looks, shows what the archive would hold, asks unless `yes`, and writes it. Returns the
// exit status: 0 when it is written.
int WriteBundle(const std::string& path, bool yes);

// A file of the bundle. Its text holds no values that open something, and lines of any bytes only
// in a form that steers no terminal.
struct BundledFile {
  std::string name;
  std::string what;  // for people
  std::string text;
};

// Each may be slow for as long as a folder or a display does not answer, and is for one thread at a
// time.
using Collector = std::function<std::vector<BundledFile>()>;

// BundledSystem.cpp: versions, environment, policies, and the profile's folders from outside.
std::vector<BundledFile> CollectVersions(const std::vector<Finding>& findings);
std::vector<BundledFile> CollectEnvironment();
std::vector<BundledFile> CollectPolicies();
std::vector<BundledFile> CollectProfile();
// BundledLog.cpp: what the user's last runs have written.
std::vector<BundledFile> CollectRuns();
std::vector<BundledFile> CollectBrowserLog();

}  // namespace doctor

#endif  // TOOLS_DOCTOR_BUNDLE_H_
