// Looks at everything that a run of the program needs: see --help.

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/doctor/Bundle.h"
#include "tools/doctor/CatalogFaults.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Report.h"

namespace {

constexpr int kWrongUsage = 3;

constexpr char kHelp[] =
    R"(embedded-browser-doctor: looks at everything that a sign-in needs, and changes nothing.

  --json       print findings as one JSON object
  --list       print the list of all known problems and what to do about them
  --markdown   print that list in Markdown, grouped by symptom
  --commonest  print the commonest problems in Markdown
  --catalogs [FOLDER]
               look through the text catalogs of the installation, or of a folder, as a translator
               does: one line for each fault, and exit status 1 when there is any
  --bundle FILE [--yes]
               write an archive (.tar.gz) for support: findings, versions, your last sign-ins
               explained. Shows first what would be in it, and asks; with --yes it does not ask.
               Exit status 1 when it is not written
  --help       print this
  --version    print the version

Run it as the user who signs in, in the session in which the window is to appear.
Prints one line for each thing looked at, and advice where something is wrong.
Exit status:
   0 all is well
   1 a sign-in works, but something is odd
   2 a sign-in does not work
   3 wrong usage
)";

// Threads of checks that gave no answer may still run, so nothing is destroyed.
[[noreturn]] void End(int status) {
  if (std::fflush(stdout) != 0) status = std::max(status, 1);
  _exit(status);
}

int RunAll(bool json) {
  const bool marks = isatty(STDOUT_FILENO);
  std::vector<doctor::Finding> findings;
  doctor::Severity overall = doctor::Severity::kOk;
  for (const doctor::Check& check : doctor::AllChecks()) {
    findings.push_back(doctor::Run(check));
    overall = std::max(overall, findings.back().severity);
    if (json) continue;
    std::fputs(doctor::FindingText(findings.back(), marks).c_str(), stdout);
    std::fflush(stdout);
  }
  std::fputs(
      json ? doctor::FindingsJson(findings, overall).c_str() : doctor::OverallText(overall).c_str(),
      stdout);
  return static_cast<int>(overall);
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  const std::string option = argc > 1 ? argv[1] : "";
  if (option == "--catalogs" && argc <= 3) {
    End(doctor::PrintCatalogFaults(argc == 3 ? argv[2] : ""));
  }
  if (option == "--bundle" && argc > 2 && argv[2][0] != '-' &&
      (argc == 3 || (argc == 4 && argv[3] == std::string("--yes")))) {
    End(doctor::WriteBundle(argv[2], argc == 4));
  }
  if (option == "--bundle") {
    std::fputs("embedded-browser-doctor: --bundle takes a FILE, and after it --yes (see --help)\n",
               stderr);
    return kWrongUsage;
  }
  if (argc > 2 ||
      (argc == 2 && option != "--json" && option != "--list" && option != "--markdown" &&
       option != "--commonest" && option != "--help" && option != "-h" && option != "--version")) {
    std::fprintf(stderr, "embedded-browser-doctor: unknown argument %s (see --help)\n",
                 argc > 2 ? argv[2] : argv[1]);
    return kWrongUsage;
  }
  if (option == "--help" || option == "-h") {
    std::fputs(kHelp, stdout);
  } else if (option == "--version") {
    std::puts("embedded-browser-doctor " EB_DOCTOR_VERSION);
  } else if (option == "--list") {
    std::fputs(doctor::ProblemsText().c_str(), stdout);
  } else if (option == "--markdown") {
    std::fputs(doctor::ProblemsMarkdown().c_str(), stdout);
  } else if (option == "--commonest") {
    std::fputs(doctor::CommonestMarkdown().c_str(), stdout);
  } else {
    End(RunAll(option == "--json"));
  }
  End(0);
}
