// What one look at the system has found.

#ifndef TOOLS_DOCTOR_FINDING_H_
#define TOOLS_DOCTOR_FINDING_H_

#include <string>

namespace doctor {

// The values are exit statuses.
enum class Severity {
  kOk = 0,
  kWarning = 1,  // a sign-in works, something is odd
  kFailure = 2,  // a sign-in does not work
};

// "ok", "warning" or "failure".
const char* SeverityName(Severity severity);

struct Finding {
  Severity severity = Severity::kOk;
  std::string problem;  // id in the list of problems (Problems.h)
  std::string found;    // one line for people, UTF-8
};

inline Finding Ok(const char* id, const std::string& found) { return {Severity::kOk, id, found}; }
inline Finding Warning(const char* id, const std::string& found) {
  return {Severity::kWarning, id, found};
}
inline Finding Failure(const char* id, const std::string& found) {
  return {Severity::kFailure, id, found};
}

}  // namespace doctor

#endif  // TOOLS_DOCTOR_FINDING_H_
