#include "tools/doctor/Report.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>

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

// The problems by what a user says first. A problem belongs to the first group one of whose
// beginnings its symptom has; the last one takes what is left.
struct Group {
  const char* heading;
  std::vector<const char*> beginnings;
};

const std::vector<Group> kGroups = {
    {"Signing in does nothing at all", {"Signing in does nothing"}},
    {"No window appears", {"No window appears"}},
    {"The window vanishes, closes or crashes", {"The window", "The client"}},
    {"I signed in, but it did not work", {"I signed in", "I am signed in"}},
    {"I have to sign in again", {"I have to"}},
    {"There is no log", {"There is no log", "The log"}},
    {"Anything else", {""}},
};

// What users of such windows complain about most.
constexpr const char* kCommonest[] = {
    "display", "chromium", "data-folder", "certificate-refused", "time-limit", "other-sign-in"};

bool Belongs(const Problem& problem, const Group& group) {
  const std::string symptom = problem.symptom;
  return std::any_of(group.beginnings.begin(), group.beginnings.end(),
                     [&](const char* beginning) { return symptom.rfind(beginning, 0) == 0; });
}

const Group& GroupOf(const Problem& problem) {
  return *std::find_if(kGroups.begin(), kGroups.end(),
                       [&](const Group& group) { return Belongs(problem, group); });
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
      return "A sign-in will not work until the failures are fixed.\n";
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
            "  Verdict: " + VerdictName(problem.verdict) + "\n";
  }
  return text;
}

std::string ProblemsMarkdown() {
  std::string text;
  for (const Group& group : kGroups) {
    text += (text.empty() ? "" : "\n") + std::string("## ") + group.heading +
            "\n\n| problem | what you see | why | what to do | verdict |\n|---|---|---|---|---|\n";
    for (const Problem& problem : AllProblems()) {
      if (&GroupOf(problem) != &group) continue;
      text += std::string("| `") + problem.id + "`" + (problem.beforehand ? "" : " †") + " | " +
              problem.symptom + " | " + problem.cause + " | " + problem.remedy + " | " +
              VerdictName(problem.verdict) + " |\n";
    }
  }
  return text;
}

std::string CommonestMarkdown() {
  std::string text = "| what you see | why | what to do |\n|---|---|---|\n";
  for (const char* id : kCommonest) {
    const Problem& problem = ProblemOf(id);
    text += std::string("| ") + problem.symptom + " | " + problem.cause + " | " + problem.remedy +
            " |\n";
  }
  return text;
}

}  // namespace doctor
