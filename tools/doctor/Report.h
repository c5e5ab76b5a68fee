// The forms in which findings and problems are shown. All texts are UTF-8 and end with a line end.

#ifndef TOOLS_DOCTOR_REPORT_H_
#define TOOLS_DOCTOR_REPORT_H_

#include <string>
#include <vector>

#include "tools/doctor/Finding.h"

namespace doctor {

// One line, and a second one with advice when something is wrong. `marks`: with a sign and a colour
// instead of a word, for terminals.
std::string FindingText(const Finding& finding, bool marks);

// The last line: what the findings mean for a sign-in.
std::string OverallText(Severity overall);

// {"overall": SEVERITY, "status": EXIT STATUS, "checks": [{id, severity, found, advice}]}
std::string FindingsJson(const std::vector<Finding>& findings, Severity overall);

// The list of problems, for people.
std::string ProblemsText();

// The section of README that shows it, with its heading.
std::string ProblemsMarkdown();

}  // namespace doctor

#endif  // TOOLS_DOCTOR_REPORT_H_
