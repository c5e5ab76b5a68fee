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

// The same in Markdown: a table for each group of symptoms, under a heading of the second level. A
// dagger marks what shows only in a run.
std::string ProblemsMarkdown();

// The commonest few, as one table without verdicts.
std::string CommonestMarkdown();

}  // namespace doctor

#endif  // TOOLS_DOCTOR_REPORT_H_
