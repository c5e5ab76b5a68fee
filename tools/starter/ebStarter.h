// Runs one step of signing in or out in the browser helper, from a program of your own.
//
// One call does it all: RunStep() starts the helper, waits for its end within a limit, reads what
// it left and judges it. The call blocks; a StopSwitch ends it from another thread or from a signal
// handler. Steps with different HOMEs may run in several threads at once; steps with the same HOME
// share one segment of shared memory, so the second is refused, or waits for its turn, in whatever
// process it runs. Helpers that are started in another way are not known to it.
//
// The library installs no signal handlers, leaves its caller's signal mask as it was and opens
// descriptors that no executed program inherits. While a step runs it owns two threads (all signals
// blocked), the helper, and one small process that ends the helper should the caller be killed. The
// caller must leave these children to it: where it ignores SIGCHLD or reaps every child, the way
// the helper ended is not known (the result is still read).

#ifndef TOOLS_STARTER_EBSTARTER_H_
#define TOOLS_STARTER_EBSTARTER_H_

#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <string>

namespace ebStarter {

// The kinds of step; the numbers travel in the request.
enum class StepType { kSamlLogin = 1, kCustom = 2, kSamlLogout = 3 };

// The kind of that name: "saml-login", "custom", "saml-logout"; nothing for any other text.
std::optional<StepType> StepTypeNamed(const std::string& name);

// What is asked of the helper. All texts are UTF-8.
struct Request {
  StepType type = StepType::kSamlLogin;
  std::string url;                // opened first
  std::string cookie;             // the gateway's cookies, planted before; may be empty
  std::string clear_cookies_url;  // a sign-in clears all cookies first when this is not empty

  // The JSON document that the helper takes as its argv[0]. All four members are always there.
  std::string ToJson() const;
};

// How long a step may take; what is longer than a week counts as a week.
struct Limits {
  std::chrono::milliseconds time{std::chrono::minutes(5)};
  // From the first signal that asks the helper to end to SIGKILL.
  std::chrono::milliseconds grace{std::chrono::seconds(10)};
  // Before the step, for another one in the same HOME to end.
  std::chrono::milliseconds turn{0};
};

// Ends a step before its time. For one step; one that has been used ends a step before it starts.
class StopSwitch {
 public:
  // Throws std::runtime_error when the process has no descriptors left.
  StopSwitch();
  // Not while RunStep() uses it, nor while Stop() may be called.
  ~StopSwitch();
  StopSwitch(const StopSwitch&) = delete;
  StopSwitch& operator=(const StopSwitch&) = delete;

  // The helper gets that signal (SIGHUP, SIGINT and SIGTERM are those that it ends cleanly on), and
  // SIGKILL when the grace has passed. May be called from any thread and from a signal handler, any
  // number of times; changes no errno.
  void Stop(int signal_number = SIGTERM) noexcept;

 private:
  friend struct Outcome RunStep(const struct Settings& settings);
  int ends_[2];
};

// Called at the start and then about once a second, in the thread of RunStep(). Must not throw.
using Progress = std::function<void(std::chrono::milliseconds elapsed)>;

struct Settings {
  Request request;
  std::string program;  // path of the helper
  std::string home;     // becomes the helper's HOME; must not be empty
  Limits limits;
  Progress progress;           // may be null
  StopSwitch* stop = nullptr;  // may be null; not owned
};

// How the helper's process ended.
struct HelperEnd {
  int pid = -1;            // what its process was; -1: none ran
  int start_error = 0;     // errno when it could not be executed; the rest is then meaningless
  int exit_status = -1;    // when it exited
  int killed_by = 0;       // the signal that ended it, if one did
  bool timed_out = false;  // the limit passed; it was asked to end by SIGTERM
  int stopped_by = 0;      // the last signal that a StopSwitch passed on
  std::chrono::milliseconds duration{0};
  // From its standard error, which also goes to the caller's, byte for byte: the last line, and the
  // last ones (without the mark) that say that its browser failed, and what was on the screen when
  // the step ended. As written, cut at 1 KiB.
  std::string last_line;
  std::string browser_failure;
  std::string browser_remark;
};

// What the helper leaves: the members of its JSON document. All texts are UTF-8.
struct ReturnData {
  std::string post_auth_cookie;  // the gateway's cookies: the session
  std::string idp_cookies;       // the identity provider's
  std::string idp_logout_url;    // where a logout goes on
  int slo_state = 0;             // how far a logout came
};

// What a finished step means. The values are the exit statuses of embedded-browser-start; 2 is left
// to wrong usage.
enum class Verdict {
  kSignedIn = 0,
  kNotStarted = 1,       // the helper could not be run at all
  kRefused = 3,          // the identity provider was reached, the gateway gave no session
  kHostCheckNeeded = 4,  // the gateway wants a host check first
  kHostCheckFailed = 5,  // the gateway's host check failed
  kLoggedOut = 6,        // the logout came to an end (state 2 or 5)
  kClosedByUser = 7,     // the helper exited with nothing gathered
  kTimedOut = 8,         // ended by the time limit
  kNothingWritten = 9,   // the helper exited without a result
  kCrashed = 10,         // a signal ended the helper, and it left no result
  kStopped = 11,         // a StopSwitch ended the step
  kUnreadable = 12,      // the result is not the JSON document that was agreed
  kBrowserFailed = 13,   // the helper's browser did not start, or exited on its own
  kBusy = 14,            // another step in the same HOME has not ended; none was run
};

// Its name in lower-case words, such as "signed in".
const char* VerdictName(Verdict verdict);

struct Outcome {
  Verdict verdict = Verdict::kNotStarted;
  // What happened and what to do about it: one line of printable UTF-8, without a full stop; empty
  // when all is well. Holds no cookie.
  std::string detail;
  // Why, in one word that does not change with the version; empty where the verdict says it all, or
  // where it is not known.
  //   closed by user, timed out, stopped; the second and third also of a refused sign-in:
  //     page-shown            an ordinary page was on the screen
  //     page-unreachable      one that could not be reached
  //     certificate-refused   the user has refused a certificate
  //   timed out, stopped:
  //     page-loading          the first page was on its way
  //     certificate-question  the question about a certificate was open
  //     nothing-shown         there was a window, but nothing in it yet
  //   browser failed, and a step that was ended before:
  //     no-display, no-browser, browser-not-started, no-window, browser-exited, display-gone,
  //     browser-failed        in some other way
  std::string reason;
  std::optional<ReturnData> data;  // nothing when the helper left nothing readable
  std::string json;                // the same as the helper wrote it, else empty
  HelperEnd end;
};

// Runs the step and returns when the helper has ended and has been reaped: at the latest when both
// limits have passed and SIGKILL has done its work. The helper's standard input is empty, its
// standard output goes to standard error, and it runs in a process group of its own. Never throws:
// what goes wrong before the helper runs is kNotStarted with the reason as its detail. The segment
// is removed afterwards.
//
// What the result proves counts more than how the helper ended: a user who has signed in stays
// signed in, even when the time limit passed in the same moment. A sign-in that the user left after
// the identity provider's cookies had been gathered reads as refused; the result cannot tell the
// two apart.
Outcome RunStep(const Settings& settings);

}  // namespace ebStarter

#endif  // TOOLS_STARTER_EBSTARTER_H_
