// Running the helper: start, wait with a bound, pass signals on, reap.

#ifndef TOOLS_STARTER_HELPERPROCESS_H_
#define TOOLS_STARTER_HELPERPROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>

// How the helper's process ended.
struct HelperEnd {
  pid_t pid = -1;          // what its process was
  int start_error = 0;     // errno when it could not be executed; the rest is then meaningless
  int exit_status = -1;    // when it exited by itself
  int killed_by = 0;       // the signal that ended it, if one did
  bool timed_out = false;  // the limit passed; it was asked to end by SIGTERM
  int stopped_by = 0;      // the signal that came to the caller and was passed on
  std::chrono::milliseconds duration{0};
};

struct HelperLimits {
  std::chrono::milliseconds time{std::chrono::minutes(5)};
  // From the first SIGTERM (or signal passed on) to SIGKILL.
  std::chrono::milliseconds grace{std::chrono::seconds(10)};
};

// Called about once a second while the helper runs.
using Progress = std::function<void(std::chrono::milliseconds elapsed)>;

// Executes `program` with `argument` as its only argument, argv[0]. Returns when it has ended and
// has been reaped, at the latest after both limits and a SIGKILL. SIGHUP, SIGINT and SIGTERM that
// come to the calling process meanwhile go to the helper instead (unless they are ignored). Should
// the calling process itself be killed, the helper gets SIGTERM. The helper's standard input is
// empty, its standard output goes to standard error, and it runs in a process group of its own.
// `progress` may be null. One call at a time in a process: signal handlers are process-wide.
HelperEnd RunHelper(const std::string& program, const std::string& argument,
                    const HelperLimits& limits, const Progress& progress);

#endif  // TOOLS_STARTER_HELPERPROCESS_H_
