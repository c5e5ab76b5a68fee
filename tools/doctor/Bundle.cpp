#include "tools/doctor/Bundle.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "tools/doctor/Archive.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Report.h"
#include "tools/doctor/Within.h"
#include "tools/log/Output.h"
#include "tools/log/Secrets.h"

namespace doctor {

namespace {

constexpr int kNotWritten = 1;
constexpr int kWrongUsage = 3;
constexpr char kFolder[] = "embedded-browser-bundle";
constexpr std::chrono::seconds kCollectLimit{10};

constexpr char kNote[] =
    "\nCookies, passwords and other values that open something are left out or stand there as\n"
    "\"<32 hidden>\". Names of hosts, paths, titles of pages and your user name are in it: look\n"
    "through it before you pass it on.\n";

int Complain(const std::string& problem, int status = kNotWritten) {
  std::fflush(stdout);
  std::fprintf(stderr, "embedded-browser-doctor: %s\n", log_reader::Harmless(problem).c_str());
  return status;
}

// The home folder as "~", wherever it stands.
std::string WithoutHome(std::string text) {
  const char* const variable = getenv("HOME");
  std::string home = variable ? variable : "";
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  if (home.size() < 2 || home[0] != '/') return text;
  for (size_t at = 0; (at = text.find(home, at)) != text.npos; ++at) {
    const size_t end = at + home.size();
    const bool longer = end < text.size() && (std::isalnum(static_cast<unsigned char>(text[end])) ||
                                              text[end] == '_' || text[end] == '-');
    if (!longer) text.replace(at, home.size(), "~");
  }
  return text;
}

std::vector<Finding> Look() {
  std::vector<Finding> findings;
  for (const Check& check : AllChecks()) findings.push_back(Run(check));
  return findings;
}

BundledFile FindingsFile(const std::vector<Finding>& findings) {
  BundledFile file = {"findings.txt", "what the doctor has found", ""};
  Severity overall = Severity::kOk;
  for (Finding finding : findings) {
    overall = std::max(overall, finding.severity);
    // It may quote what programs say.
    if (finding.severity != Severity::kOk) finding.found = log_reader::HideSecrets(finding.found);
    finding.found = log_reader::Harmless(finding.found);
    file.text += FindingText(finding, false);
  }
  file.text += OverallText(overall);
  return file;
}

std::vector<BundledFile> Collect() {
  const std::vector<Finding> findings = Look();
  std::vector<BundledFile> files = {FindingsFile(findings)};
  const Collector collectors[] = {[findings] { return CollectVersions(findings); },
                                  CollectEnvironment,
                                  CollectPolicies,
                                  CollectProfile,
                                  CollectBrowserLog,
                                  CollectRuns};
  for (const Collector& collector : collectors) {
    const auto more = Within(kCollectLimit, collector);
    if (more) files.insert(files.end(), more->begin(), more->end());
    if (!more) files[0].text += "Something could not be collected in time.\n";
  }
  for (BundledFile& file : files) file.text = WithoutHome(file.text);
  std::sort(files.begin(), files.end(),
            [](const BundledFile& one, const BundledFile& other) { return one.name < other.name; });
  return files;
}

void Show(const std::vector<BundledFile>& files) {
  for (const BundledFile& file : files) {
    std::printf("  %-20s %7.1f KB  %s\n", file.name.c_str(),
                static_cast<double>(file.text.size()) / 1024, file.what.c_str());
  }
  std::fputs(kNote, stdout);
  std::fflush(stdout);
}

bool Asked(const std::string& path) {
  std::printf("Write %s? [y/N] ", log_reader::Harmless(path).c_str());
  std::fflush(stdout);
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

}  // namespace

int WriteBundle(const std::string& path, bool yes) {
  if (!yes && !isatty(STDIN_FILENO)) {
    return Complain("standard input is no terminal to ask on; --yes writes without asking",
                    kWrongUsage);
  }
  const std::string no_file = WhyNoNewFile(path);
  if (!no_file.empty()) return Complain(no_file);
  // Everybody can take the memory of the log's control block away while it is looked at.
  std::signal(SIGBUS, [](int) {
    constexpr char kTaken[] =
        "embedded-browser-doctor: no bundle is written: the log's control block has been taken "
        "away\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kTaken, sizeof kTaken - 1);
    _exit(kNotWritten);
  });
  std::puts("Looking at everything that a sign-in needs. The bundle will hold:\n");
  std::fflush(stdout);
  const std::vector<BundledFile> files = Collect();
  Show(files);
  if (!yes && !Asked(path)) return Complain("nothing is written");
  std::vector<ArchivedFile> archived;
  for (const BundledFile& file : files) archived.push_back({file.name, file.text});
  const std::string problem = WriteArchive(path, kFolder, archived);
  if (!problem.empty()) return Complain("no bundle is written: " + problem);
  std::printf("written: %s\n", log_reader::Harmless(path).c_str());
  return 0;
}

}  // namespace doctor
