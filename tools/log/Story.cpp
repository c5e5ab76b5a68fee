#include "tools/log/Story.h"

#include <algorithm>
#include <iomanip>

#include "tools/log/Course.h"
#include "tools/log/Texts.h"

namespace log_reader {

namespace {

std::string StepName(Step step) {
  switch (step) {
    case Step::kSamlLogin:
      return "SAML sign-in";
    case Step::kCustom:
      return "custom sign-in";
    case Step::kSamlLogout:
      return "SAML logout";
    default:
      return "step of an unknown kind";
  }
}

// "[21:55:02.417 CefSAMLLogin:61]"
std::string Source(const Record* record) {
  if (!record) return "";
  return " [" + record->time.substr(std::min<size_t>(11, record->time.size())) + ' ' +
         Printable(record->place, 60) + ']';
}

}  // namespace

Story Tell(const Run& run) {
  const std::vector<Event> events = EventsOf(run);
  const Course course = CourseOf(run, events);
  Story story;
  story.title = StepName(course.step) + " of " + Printable(run.user, 40);
  if (!course.gateway.empty()) story.title += " at " + course.gateway;
  story.title +=
      ", process " + std::to_string(run.process) + ", " + run.records.front().time.substr(0, 19);
  story.gateway = course.gateway;
  story.provider = course.provider;
  story.length = course.length;
  story.marks = MarksOf(run, course, events);
  story.ending = EndingOf(course);
  return story;
}

void Explain(const Story& story, std::ostream& out) {
  out << story.title << "\n\n";
  for (const Mark& mark : story.marks) {
    out << std::setw(12) << Duration(mark.at) << "  " << mark.text << Source(mark.record) << '\n';
  }
  const Ending& ending = story.ending;
  out << "\nThe end: " << ending.verdict << ".\n"
      << "  " << ending.what.text << Source(ending.what.record) << '\n';
  if (!ending.why.empty()) out << "\nWhy:\n";
  for (const Sentence& why : ending.why) {
    out << "  - " << why.text << Source(why.record) << '\n';
  }
  if (!ending.more.empty()) out << '\n' << ending.more << '\n';
}

std::string Summary(const Run& run) {
  const std::vector<Event> events = EventsOf(run);
  const Course course = CourseOf(run, events);
  const std::string gateway = course.gateway.empty() ? "-" : course.gateway;
  return "p" + std::to_string(run.process) + "  " + run.records.front().time.substr(0, 19) + "  " +
         Duration(course.length) + "  " + Printable(run.user, 40) + "  " + StepName(course.step) +
         "  " + gateway + "  " + EndingOf(course).verdict;
}

}  // namespace log_reader
