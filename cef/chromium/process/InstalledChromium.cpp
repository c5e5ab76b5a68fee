#include "cef/chromium/process/InstalledChromium.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "cef/chromium/base/Json.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr char kChromiumPolicies[] = "/etc/chromium/policies";
// Ubuntu's, and so the snap's.
constexpr char kChromiumBrowserPolicies[] = "/etc/chromium-browser/policies";
constexpr char kChromePolicies[] = "/etc/opt/chrome/policies";
constexpr char kEdgePolicies[] = "/etc/opt/edge/policies";
constexpr char kBravePolicies[] = "/etc/brave/policies";

struct Place {
  const char* path;
  const char* policies;
};

constexpr Place kPlaces[] = {
    // Programs.
    {"/usr/lib/chromium/chromium", kChromiumPolicies},
    {"/usr/lib64/chromium/chromium", kChromiumPolicies},
    {"/usr/lib/chromium-browser/chromium-browser", kChromiumBrowserPolicies},
    {"/usr/lib64/chromium-browser/chromium-browser", kChromiumPolicies},
    {"/opt/google/chrome/chrome", kChromePolicies},
    {"/opt/microsoft/msedge/msedge", kEdgePolicies},
    {"/opt/brave.com/brave/brave", kBravePolicies},
    // Commands that start them, mostly shell scripts with switches of their own.
    {"/usr/local/bin/chromium", kChromiumPolicies},
    {"/usr/bin/chromium", kChromiumPolicies},
    {"/usr/local/bin/chromium-browser", kChromiumBrowserPolicies},
    {"/usr/bin/chromium-browser", kChromiumBrowserPolicies},
    {"/usr/local/bin/google-chrome", kChromePolicies},
    {"/usr/bin/google-chrome", kChromePolicies},
    {"/usr/bin/microsoft-edge", kEdgePolicies},
    {"/usr/bin/brave-browser", kBravePolicies},
    {"/snap/bin/chromium", kChromiumBrowserPolicies},
    {"/snap/bin/brave", kBravePolicies},
    {"/var/lib/flatpak/exports/bin/org.chromium.Chromium", kChromiumPolicies},
    {"/var/lib/flatpak/exports/bin/com.google.Chrome", kChromePolicies},
    {"/var/lib/flatpak/exports/bin/com.microsoft.Edge", kEdgePolicies},
    {"/var/lib/flatpak/exports/bin/com.brave.Browser", kBravePolicies},
};

// The policies that forbid, and how. What Chromium itself would not take is no obstacle either.
constexpr char kFormerName[] = "DeveloperToolsDisabled";
constexpr char kPresentName[] = "DeveloperToolsAvailability";
struct Rule {
  const char* name;
  bool (*forbids)(const JsonValue& value);
};
constexpr Rule kRules[] = {
    {"RemoteDebuggingAllowed",
     [](const JsonValue& value) { return value.IsBool() && !value.GetBool(); }},
    {kPresentName, [](const JsonValue& value) { return value.IsInt() && value.GetInt() == 2; }},
    {kFormerName, [](const JsonValue& value) { return value.IsBool() && value.GetBool(); }},
};

std::vector<fs::path> FilesIn(const std::string& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (it->is_regular_file(error)) files.push_back(it->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// As Chromium reads it, which allows comments and commas too many.
void Parse(const fs::path& file, rapidjson::Document* document) {
  constexpr std::streamsize kLongest = 1 << 20;
  std::ifstream stream(file);
  std::string text(kLongest, '\0');
  stream.read(text.data(), kLongest);
  text.resize(static_cast<size_t>(stream.gcount()));
  document->Parse<rapidjson::kParseCommentsFlag | rapidjson::kParseTrailingCommasFlag |
                  rapidjson::kParseIterativeFlag>(text.c_str());
}

void Add(const InstalledChromium& found, std::vector<InstalledChromium>* all) {
  std::error_code error;
  const fs::path real = fs::canonical(found.path, error);
  const bool known = std::any_of(all->begin(), all->end(), [&](const InstalledChromium& other) {
    return fs::canonical(other.path, error) == real;
  });
  if (!known) all->push_back(found);
}

}  // namespace

std::vector<InstalledChromium> FindChromiums(std::string* err) {
  std::vector<InstalledChromium> found;
  for (const Place& place : kPlaces) {
    if (access(place.path, X_OK) == 0) Add({place.path, place.policies}, &found);
  }
  if (found.empty()) {
    *err =
        "Chromium is not installed (looked for Chromium, Chrome, Edge and Brave at the usual "
        "places, /usr/lib/chromium/chromium first)";
  }
  return found;
}

std::string ForbiddingPolicy(const InstalledChromium& chromium) {
  // The name of a policy, and the text of what forbids, "" for what allows: of several files the
  // last one counts, and a recommendation only where nothing is prescribed.
  std::map<std::string, std::string> verdicts;
  for (const char* level : {"/recommended", "/managed"}) {
    for (const fs::path& file : FilesIn(chromium.policy_folder + level)) {
      rapidjson::Document policies;
      Parse(file, &policies);
      if (policies.HasParseError()) continue;
      for (const Rule& rule : kRules) {
        const JsonValue* value = MemberAt(policies, rule.name);
        if (!value) continue;
        verdicts[rule.name] =
            rule.forbids(*value) ? std::string(rule.name) + " in " + file.string() : std::string();
      }
    }
  }
  if (verdicts.count(kPresentName) != 0) verdicts.erase(kFormerName);
  for (const auto& [name, verdict] : verdicts) {
    if (!verdict.empty()) {
      return "the policy " + verdict + " forbids that other programs use " + chromium.path;
    }
  }
  return {};
}

std::vector<std::string> PolicyNames(const InstalledChromium& chromium) {
  std::vector<std::string> names;
  for (const char* level : {"/managed", "/recommended"}) {
    for (const fs::path& file : FilesIn(chromium.policy_folder + level)) {
      rapidjson::Document policies;
      Parse(file, &policies);
      if (policies.HasParseError() || !policies.IsObject()) {
        names.push_back(file.string() + " cannot be read");
        continue;
      }
      for (const auto& policy : policies.GetObject()) {
        names.push_back(std::string(policy.name.GetString()) + " in " + file.string());
      }
    }
  }
  return names;
}

}  // namespace engine
