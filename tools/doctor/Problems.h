// What goes wrong, as a user sees it: the one list behind the checks' advice, --list and
// the documents.

#ifndef TOOLS_DOCTOR_PROBLEMS_H_
#define TOOLS_DOCTOR_PROBLEMS_H_

#include <string>
#include <vector>

#include "tools/starter/ebStarter.h"

namespace doctor {

// All texts are UTF-8, one line, and fit into a Markdown table.
struct Problem {
  const char* id;
  bool beforehand;  // a check can find it; else it only shows in a run
  const char* symptom;
  const char* cause;
  const char* remedy;
  ebStarter::Verdict verdict;  // when a run meets it
};

const std::vector<Problem>& AllProblems();

// Throws std::logic_error for an id that is not in the list.
const Problem& ProblemOf(const std::string& id);

}  // namespace doctor

#endif  // TOOLS_DOCTOR_PROBLEMS_H_
