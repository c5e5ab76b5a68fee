// Signals of this process as bytes to read, so that one poll() waits for them and for the clock.

#ifndef TOOLS_STARTER_SIGNALPIPE_H_
#define TOOLS_STARTER_SIGNALPIPE_H_

#include <signal.h>

#include <chrono>

// While it lives, SIGCHLD, SIGHUP, SIGINT and SIGTERM are caught (the last three only where they
// are not ignored). One object at a time in a process.
class SignalPipe {
 public:
  // Throws std::runtime_error when no pipe can be had.
  SignalPipe();
  // Restores what was installed before.
  ~SignalPipe();
  SignalPipe(const SignalPipe&) = delete;
  SignalPipe& operator=(const SignalPipe&) = delete;

  // The next signal's number, or 0 when `limit` has passed (or another signal interrupted).
  int Wait(std::chrono::milliseconds limit) const;

 private:
  struct sigaction former_[4];
};

#endif  // TOOLS_STARTER_SIGNALPIPE_H_
