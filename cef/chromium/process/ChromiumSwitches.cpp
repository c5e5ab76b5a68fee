#include "cef/chromium/process/ChromiumSwitches.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>

#include "cef/chromium/process/Product.h"

namespace engine {

namespace {

constexpr uint64_t kSmallSharedMemory = 64ull << 20;

struct Switch {
  const char* name;
  const char* value;
};

constexpr Switch kBuiltIn[] = {
    // Without it --no-sandbox shows a warning bar in every window.
    {"test-type", ""},
    {"no-first-run", ""},
    {"no-default-browser-check", ""},
    // A question for the key ring's password would block the start.
    {"password-store", "basic"},
    {"disable-background-networking", ""},
    {"disable-component-update", ""},
    // The component updater and the list of signed-in accounts ask anyway. Port 9 is one that
    // Chromium connects to under no circumstances; the address is one that nobody has.
    {"component-updater", "url-source=http://192.0.2.1:9/"},
    {"gaia-url", "http://192.0.2.1:9/"},
    {"disable-sync", ""},
    {"disable-default-apps", ""},
    {"disable-domain-reliability", ""},
    {"disable-breakpad", ""},
    {"disable-crash-reporter", ""},
    {"hide-crash-restore-bubble", ""},
    {"disable-session-crashed-bubble", ""},
    {"noerrdialogs", ""},
    // A page may open windows at any time, as in an embedded browser.
    {"disable-popup-blocking", ""},
    // A page that could not be had is tried again when the network is back.
    {"enable-auto-reload", ""},
    // Identity providers object to navigator.webdriver, which the pipe would set.
    {"disable-blink-features", "AutomationControlled"},
    // BackForwardCache: pages restored from it pass no request hook. Enable...BoundCookies: a
    // cookie
    // planted for http would not be sent over https. NetworkTimeServiceQuerying asks Chromium's
    // maker for the time. The others change addresses, show bubbles or ask before private addresses
    // are reached.
    {"disable-features",
     "Translate,OptimizationHints,MediaRouter,DialMediaRouteProvider,BackForwardCache,"
     "HttpsUpgrades,HttpsFirstBalancedModeAutoEnable,LocalNetworkAccessChecks,"
     "EnableSchemeBoundCookies,EnablePortBoundCookies,NetworkTimeServiceQuerying"},
    // The cache is in the folder for temporary files, which may be memory.
    {"disk-cache-size", "67108864"},
    {"class", kWindowClass},
    // A window of Wayland could be neither named nor placed.
    {"ozone-platform", "x11"},
};

// Switches whose values are lists.
constexpr std::array<const char*, 4> kLists = {"disable-features", "enable-features",
                                               "disable-blink-features", "enable-blink-features"};

bool IsList(const std::string& name) {
  return std::find(kLists.begin(), kLists.end(), name) != kLists.end();
}

std::string Join(const std::string& first, const std::string& second) {
  std::string joined = first;
  std::istringstream items(second);
  for (std::string item; std::getline(items, item, ',');) {
    if (item.empty() || ("," + joined + ",").find("," + item + ",") != std::string::npos) continue;
    if (!joined.empty()) joined += ',';
    joined += item;
  }
  return joined;
}

void Put(const std::string& name, const std::string& value, Switches* switches) {
  const auto known = std::find_if(switches->begin(), switches->end(),
                                  [&](const auto& entry) { return entry.first == name; });
  if (known == switches->end()) {
    switches->emplace_back(name, value);
  } else {
    known->second = IsList(name) ? Join(known->second, value) : value;
  }
}

}  // namespace

std::vector<std::string> ChromiumArguments(const std::string& profile_dir, const Switches& wanted,
                                           bool small_shared_memory) {
  Switches switches;
  for (const Switch& entry : kBuiltIn) Put(entry.name, entry.value, &switches);
  if (small_shared_memory) Put("disable-dev-shm-usage", "", &switches);
  for (const auto& [name, value] : wanted) Put(name, value, &switches);
  Put("remote-debugging-pipe", "", &switches);
  // Without it Chromium ends with its last window, or opens one in the Chromium that already has
  // the profile.
  Put("no-startup-window", "", &switches);
  Put("user-data-dir", profile_dir, &switches);

  std::vector<std::string> arguments;
  for (const auto& [name, value] : switches) {
    arguments.push_back(value.empty() ? "--" + name : "--" + name + "=" + value);
  }
  return arguments;
}

bool SharedMemoryIsSmall(const char* folder) {
  struct statvfs info;
  if (statvfs(folder, &info) != 0) return true;
  return static_cast<uint64_t>(info.f_bavail) * info.f_frsize < kSmallSharedMemory;
}

}  // namespace engine
