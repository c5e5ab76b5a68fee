#include "tools/doctor/Report.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include "tools/doctor/Problems.h"

namespace doctor {

namespace {

constexpr const char* kNames[] = {"ok", "warning", "failure"};
constexpr const char* kMarks[] = {"\033[32m✓\033[0m", "\033[33m!\033[0m", "\033[31m✗\033[0m"};
constexpr size_t kNameWidth = 8;
constexpr size_t kIdWidth = 21;

std::string Padded(std::string text, size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text;
}

size_t At(Severity severity) { return static_cast<size_t>(severity); }

std::string Table(bool beforehand, const char* first_heading) {
  std::string text = std::string("| ") + first_heading +
                     " | what you see | why | what to do | verdict |\n|---|---|---|---|---|\n";
  for (const Problem& problem : AllProblems()) {
    if (problem.beforehand != beforehand) continue;
    text += std::string("| `") + problem.id + "` | " + problem.symptom + " | " + problem.cause +
            " | " + problem.remedy + " | " + problem.verdict + " |\n";
  }
  return text;
}

}  // namespace

const char* SeverityName(Severity severity) { return kNames[At(severity)]; }

std::string FindingText(const Finding& finding, bool marks) {
  const std::string begin = marks ? std::string(kMarks[At(finding.severity)]) + " "
                                  : Padded(SeverityName(finding.severity), kNameWidth);
  std::string text = begin + Padded(finding.problem, kIdWidth) + finding.found + "\n";
  if (finding.severity != Severity::kOk) {
    const Problem& problem = ProblemOf(finding.problem);
    const std::string margin(marks ? 2 : kNameWidth, ' ');
    text += margin + problem.cause + ".\n" + margin + "→ " + problem.remedy + ".\n";
  }
  return text;
}

std::string OverallText(Severity overall) {
  switch (overall) {
    case Severity::kOk:
      return "All is well.\n";
    case Severity::kWarning:
      return "A sign-in works, but see the warnings.\n";
    case Severity::kFailure:
      return "A sign-in does not work until the failures are mended.\n";
  }
  return "";
}

std::string FindingsJson(const std::vector<Finding>& findings, Severity overall) {
  rapidjson::StringBuffer buffer;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
  writer.SetIndent(' ', 2);
  writer.StartObject();
  writer.Key("overall");
  writer.String(SeverityName(overall));
  writer.Key("status");
  writer.Int(static_cast<int>(overall));
  writer.Key("checks");
  writer.StartArray();
  for (const Finding& finding : findings) {
    const bool ok = finding.severity == Severity::kOk;
    writer.StartObject();
    writer.Key("id");
    writer.String(finding.problem.c_str());
    writer.Key("severity");
    writer.String(SeverityName(finding.severity));
    writer.Key("found");
    writer.String(finding.found.c_str());
    writer.Key("advice");
    writer.String(ok ? "" : ProblemOf(finding.problem).remedy);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
  return std::string(buffer.GetString()) + "\n";
}

std::string ProblemsText() {
  std::string text;
  for (const Problem& problem : AllProblems()) {
    text += std::string(problem.id) + (problem.beforehand ? "" : " (shows only in a run)") + "\n" +
            "  " + problem.symptom + ".\n  " + problem.cause + ".\n  → " + problem.remedy + ".\n" +
            "  Verdict: " + problem.verdict + "\n";
  }
  return text;
}

std::string ProblemsMarkdown() {
  return "## When it does not work\n\n"
         "`embedded-browser-doctor` (here: `./dev doctor`) looks at everything that a sign-in "
         "needs, says what is wrong and what to do about it, and changes nothing. Its exit status "
         "is 0 when all is well, 1 when a sign-in works but something is odd, 2 when it does not "
         "work. `--json` is for programs. \"Verdict\" is what `embedded-browser-start` says of "
         "such a run.\n\n"
         "Found before a sign-in:\n\n" +
         Table(true, "check") + "\nShows only in one:\n\n" + Table(false, "problem");
}

}  // namespace doctor
