// The system around a run, for a bundle: versions, environment, policies, the profile from outside.

#include <X11/Xlib.h>
#include <glob.h>
#include <gnu/libc-version.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "cef/chromium/process/ChildEnvironment.h"
#include "cef/chromium/process/InstalledChromium.h"
#include "libs/kxaccess/RunPaths.h"
#include "platform/XWindows.h"
#include "tools/doctor/Bundle.h"
#include "tools/doctor/Looks.h"
#include "tools/log/Output.h"
#include "tools/log/Secrets.h"

namespace doctor {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostEntries = 200;  // of a folder

std::string Line(const std::string& name, const std::string& value) {
  return name + ": " + (value.empty() ? "not known" : log_reader::Harmless(value)) + "\n";
}

std::string Variable(const char* name) {
  const char* const value = getenv(name);
  return value ? value : "";
}

std::string Distribution() {
  std::ifstream file("/etc/os-release");
  const std::string key = "PRETTY_NAME=";
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(key, 0) == 0) return line.substr(key.size());
  }
  return {};
}

// By their files' names.
std::string GnustepLibraries() {
  std::set<std::string> names;
  glob_t found = {};
  for (const char* const pattern :
       {"/usr/lib/libgnustep-*.so.*.*", "/usr/lib*/*/libgnustep-*.so.*.*",
        "/usr/lib/*/GNUstep/Bundles/libgnustep-back-*",
        "/usr/lib/GNUstep/Bundles/libgnustep-back-*"}) {
    if (glob(pattern, 0, nullptr, &found) == 0) {
      for (size_t i = 0; i < found.gl_pathc; ++i)
        names.insert(fs::path(found.gl_pathv[i]).filename());
    }
    globfree(&found);
  }
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

// As it calls itself on the display, with the screen's size.
std::string WindowManager() {
  Display* const display = XOpenDisplay(nullptr);
  if (!display) return {};
  std::string name = "none";
  {
    const PassOverXErrors pass(display);
    const auto said =
        NumbersOfWindow(display, DefaultRootWindow(display), "_NET_SUPPORTING_WM_CHECK");
    if (!said.empty()) name = BytesOfWindow(display, said[0], "_NET_WM_NAME");
  }
  name += ", screen of " + std::to_string(DisplayWidth(display, DefaultScreen(display))) + " x " +
          std::to_string(DisplayHeight(display, DefaultScreen(display))) + " pixels";
  XCloseDisplay(display);
  return name;
}

// Of variables that a browser inherits, those whose value is never shown.
bool IsSecret(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  const auto has = [&](const char* word) { return name.find(word) != name.npos; };
  return has("TOKEN") || has("PASS") || has("SECRET") || has("COOKIE") || has("KEY") ||
         has("CRED") || has("_AUTH") || has("_PIN") || has("PWD");
}

// A proxy's user and password may come without "://", and hold any characters.
std::string ShownValue(const std::string& name, const std::string& value) {
  if (IsSecret(name)) return "<" + std::to_string(value.size()) + " hidden>";
  const size_t at = value.rfind('@');
  if (name.size() < 6 || strcasecmp(name.c_str() + name.size() - 6, "_proxy") != 0 ||
      at == value.npos) {
    return log_reader::HideSecrets(value);
  }
  const size_t scheme = value.find("://");
  const size_t begin = scheme < at ? scheme + 3 : 0;
  return value.substr(0, begin) + "<" + std::to_string(at - begin) + " hidden>" +
         log_reader::HideSecrets(value.substr(at));
}

unsigned long long SizeOf(const fs::directory_entry& entry) {
  std::error_code error;
  if (entry.is_symlink(error)) return 0;
  if (!entry.is_directory(error)) return entry.is_regular_file(error) ? entry.file_size(error) : 0;
  unsigned long long size = 0;
  for (fs::recursive_directory_iterator it(entry.path(), error), end; !error && it != end;
       it.increment(error)) {
    std::error_code gone;
    if (!it->is_symlink(gone) && it->is_regular_file(gone)) {
      const auto part = it->file_size(gone);
      if (!gone) size += part;
    }
  }
  return size;
}

// A line for the folder, and one for each thing in it. What is deeper may be named after hosts.
std::string Listing(const std::string& folder) {
  struct stat info;
  if (lstat(folder.c_str(), &info) != 0) return folder + " does not exist\n\n";
  std::set<std::string> lines;
  char front[64];
  const auto add = [&](const fs::path& path, const std::string& name, unsigned long long size) {
    if (lstat(path.c_str(), &info) != 0) return std::string();
    std::snprintf(front, sizeof front, "%06o %12llu ", static_cast<unsigned>(info.st_mode), size);
    return log_reader::Harmless(name) + "\t" + front + UserName(info.st_uid);
  };
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (lines.size() == kMostEntries) break;
    lines.insert(add(it->path(), it->path().filename(), SizeOf(*it)));
  }
  std::string text = add(folder, folder, 0) + "\n";
  for (const std::string& line : lines) text += "  " + line + "\n";
  return text + (lines.size() == kMostEntries ? "  and more\n\n" : "\n");
}

}  // namespace

std::vector<BundledFile> CollectVersions(const std::vector<Finding>& findings) {
  std::string text = Line("doctor", EB_DOCTOR_VERSION);
  bool display = false;
  for (const Finding& finding : findings) {
    const std::string& id = finding.problem;
    display = display || (id == "display" && finding.severity == Severity::kOk);
    // Each says which it is, and of which version.
    if (id == "program" || id == "framework" ||
        (id.rfind("chromium", 0) == 0 && id != "chromium-language")) {
      text += Line(id, finding.severity == Severity::kOk ? finding.found
                                                         : log_reader::HideSecrets(finding.found));
    }
  }
  utsname system = {};
  uname(&system);
  text +=
      Line("GNUstep", GnustepLibraries()) + Line("C library", gnu_get_libc_version()) +
      Line("distribution", Distribution()) +
      Line("kernel", std::string(system.sysname) + " " + system.release + " " + system.machine) +
      Line("desktop", Variable("XDG_CURRENT_DESKTOP")) +
      Line("session", Variable("XDG_SESSION_TYPE")) +
      Line("window manager", display ? WindowManager() : "");
  return {{"versions.txt", "versions of program, framework, Chromium and system", text}};
}

std::vector<BundledFile> CollectEnvironment() {
  // Beside what the browser inherits, what the program itself looks at.
  const std::set<std::string> own = {"TMPDIR", "VELD_LOG_NAME"};
  std::set<std::string> lines;
  for (char** entry = environ; entry && *entry; ++entry) {
    const std::string text = *entry;
    const size_t equals = std::min(text.find('='), text.size());
    const std::string name = text.substr(0, equals);
    if (!engine::MayInherit(name) && own.count(name) == 0) continue;
    const std::string value = text.substr(std::min(equals + 1, text.size()));
    lines.insert(log_reader::Harmless(name + "=" + ShownValue(name, value)));
  }
  BundledFile file = {"environment.txt", "variables that a sign-in looks at, secrets hidden", ""};
  for (const std::string& line : lines) file.text += line + "\n";
  return {file};
}

std::vector<BundledFile> CollectPolicies() {
  BundledFile file = {"policies.txt", "names of the administrator's policies for the browser", ""};
  std::string none;
  for (const engine::InstalledChromium& chromium : engine::FindChromiums(&none)) {
    file.text += chromium.path + "\n";
    for (const std::string& name : engine::PolicyNames(chromium)) {
      file.text += "  " + log_reader::Harmless(name) + "\n";
    }
  }
  if (file.text.empty()) file.text = none + "\n";
  return {file};
}

std::vector<BundledFile> CollectProfile() {
  const RunPaths paths = RunPaths::FromEnvironment();
  std::string text = "name, mode, bytes, owner\n\n";
  if (!getenv("HOME")) return {};
  for (const std::string& folder :
       {paths.channel, paths.browser_data, paths.browser_data + "/Default"}) {
    text += Listing(folder);
  }
  return {{"profile.txt", "sizes and modes in the data folder, no contents", text}};
}

}  // namespace doctor
