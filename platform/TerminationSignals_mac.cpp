#include <dispatch/dispatch.h>
#include <signal.h>

#include "platform/ModalAlert.h"
#include "platform/TerminationSignals.h"

namespace {

struct Signal {
  int number;
  void (*handler)(int) = nullptr;  // what the program has installed for it
  bool came = false;
};
Signal g_signals[] = {{SIGHUP}, {SIGINT}, {SIGTERM}};

bool g_delivering = false;

// All that the signal itself does. Not SIG_IGN, which every child process would inherit.
void DoNothing(int) {}

void DeliverIfItCame(Signal& held) {
  if (!held.came || !g_delivering) return;
  held.came = false;
  if (held.handler) held.handler(held.number);
  EndModalAlert();
}

// On the main queue, which the run loop serves in all of its modes.
void OnSignal(void* signal) {
  Signal& held = *static_cast<Signal*>(signal);
  held.came = true;
  DeliverIfItCame(held);
}

}  // namespace

void HoldTerminationSignals() {
  sigset_t blocked;
  sigemptyset(&blocked);
  for (Signal& held : g_signals) {
    sigaddset(&blocked, held.number);
    // Sees every signal from now on, whatever the process does with it: blocked ones, and ones that
    // a handler takes. Lives as long as the process.
    dispatch_source_t source =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(held.number), 0,
                               dispatch_get_main_queue());
    dispatch_set_context(source, &held);
    dispatch_source_set_event_handler_f(source, OnSignal);
    dispatch_resume(source);
  }
  pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
  KeepTerminationSignals();
}

// CEF's start first clears the signal mask and then resets the handlers: a signal in the few
// instructions until it calls back still ends the process.
void KeepTerminationSignals() {
  for (Signal& held : g_signals) {
    struct sigaction quiet = {};
    quiet.sa_handler = DoNothing;
    quiet.sa_flags = SA_RESTART;
    sigemptyset(&quiet.sa_mask);
    struct sigaction former = {};
    if (sigaction(held.number, &quiet, &former) != 0) continue;
    if (former.sa_handler == SIG_DFL || former.sa_handler == SIG_IGN) continue;
    if (former.sa_handler != DoNothing) held.handler = former.sa_handler;
  }
}

// Not at once: the caller is in the middle of making what a handler would close.
void DeliverTerminationSignals() {
  dispatch_async_f(dispatch_get_main_queue(), nullptr, [](void*) {
    g_delivering = true;
    for (Signal& held : g_signals) DeliverIfItCame(held);
  });
}
