// Keeps SIGHUP, SIGINT and SIGTERM back until the program can end in good order.
//
// On Linux the framework takes the three over and calls the installed handlers from its message
// loop, once there is a browser; only the first function does anything there. On macOS all of that
// is done here.

#ifndef PLATFORM_TERMINATIONSIGNALS_H_
#define PLATFORM_TERMINATIONSIGNALS_H_

// Called once, first thing, on the main thread, before there are others. From then on none of the
// three interrupts anything or ends the process; one that comes is delivered later.
void HoldTerminationSignals();

// Holds them again. To be called before CEF starts, from within that start (which resets handlers
// and signal mask) as early as possible, and whenever handlers have been installed anew: they are
// remembered for the delivery. Main thread.
void KeepTerminationSignals();

// Called when there is something that the handlers can end; further calls do nothing. From now on a
// signal, one that has come meanwhile included, calls its handler from the main thread's run loop,
// also while an alert is open, and ends that alert. Main thread.
void DeliverTerminationSignals();

#endif  // PLATFORM_TERMINATIONSIGNALS_H_
