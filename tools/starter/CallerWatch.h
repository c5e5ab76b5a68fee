// A process that ends the helper when its caller is gone.

#ifndef TOOLS_STARTER_CALLERWATCH_H_
#define TOOLS_STARTER_CALLERWATCH_H_

#include <sys/types.h>

#include <chrono>

#include "tools/starter/Pipe.h"

namespace ebStarter {

// Works wherever there are pipes, and also when the caller was killed by SIGKILL: the helper gets
// SIGTERM and, after the grace, SIGKILL. Until then its standard error is read and thrown away, so
// that it can end cleanly.
class CallerWatch {
 public:
  // To be made with all signals blocked, and the helper leading a process group. `error_output` is
  // the read end of the helper's standard error. Where no process can be made the helper goes
  // unwatched.
  CallerWatch(pid_t helper, int error_output, std::chrono::milliseconds grace);
  // To be called when the helper has been reaped.
  ~CallerWatch();
  CallerWatch(const CallerWatch&) = delete;
  CallerWatch& operator=(const CallerWatch&) = delete;

 private:
  [[noreturn]] void Watch(pid_t helper, int error_output, std::chrono::milliseconds grace) const;

  Pipe alive_;
  pid_t process_;
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_CALLERWATCH_H_
