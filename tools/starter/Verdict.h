// What a finished step means to the caller.

#ifndef TOOLS_STARTER_VERDICT_H_
#define TOOLS_STARTER_VERDICT_H_

#include <string>

#include "tools/starter/HelperProcess.h"
#include "tools/starter/LaunchRequest.h"

// The values are the starter's exit statuses; 2 is left to wrong usage.
enum class Verdict {
  kSignedIn = 0,
  kNotStarted = 1,       // the helper could not be run at all
  kRefused = 3,          // the identity provider was reached, the gateway gave no session
  kHostCheckNeeded = 4,  // the gateway wants a host check first
  kHostCheckFailed = 5,  // the gateway's host check failed
  kLoggedOut = 6,        // the logout came to an end (state 2 or 5)
  kClosedByUser = 7,     // the helper ended by itself with nothing gathered
  kTimedOut = 8,         // ended by the time limit
  kNothingWritten = 9,   // the helper ended by itself without a result
  kCrashed = 10,         // a signal ended the helper, and it left no result
  kStopped = 11,         // a signal to the starter ended the step
  kUnreadable = 12,      // the result is not the JSON document that was agreed
};

const char* VerdictName(Verdict verdict);

struct StepOutcome {
  Verdict verdict = Verdict::kNotStarted;
  std::string detail;    // one line for people; may be empty
  std::string document;  // the helper's JSON when it was readable, else empty
  HelperEnd end;
};

// Judges a step by its kind, by how the helper ended and by the text it left (up to the first NUL).
// What the result proves counts more than how the helper ended: a user who has signed in stays
// signed in, even when the time limit passed in the same moment. A sign-in that the user left after
// the identity provider's cookies had been gathered reads as refused; the result cannot tell the
// two apart.
StepOutcome Judge(StepType type, const HelperEnd& end, const std::string& text);

#endif  // TOOLS_STARTER_VERDICT_H_
