#include <pthread.h>
#include <signal.h>

#include <initializer_list>

#include "platform/TerminationSignals.h"

namespace {

void ChangeMask(int how) {
  sigset_t held;
  sigemptyset(&held);
  for (int signum : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&held, signum);
  pthread_sigmask(how, &held, nullptr);
}

}  // namespace

void HoldTerminationSignals() { ChangeMask(SIG_BLOCK); }

void DeliverTerminationSignals() { ChangeMask(SIG_UNBLOCK); }
