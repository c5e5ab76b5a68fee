#include <csignal>
#include <initializer_list>

#include "platform/TerminationSignals.h"

void HoldTerminationSignals() {
  sigset_t held;
  sigemptyset(&held);
  for (int signum : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&held, signum);
  pthread_sigmask(SIG_BLOCK, &held, nullptr);
}

void KeepTerminationSignals() {}

// Unblocking here would run the handlers in the middle of arbitrary code.
void DeliverTerminationSignals() {}
