// Keeps SIGHUP, SIGINT and SIGTERM back until the program can end in good order.

#ifndef PLATFORM_TERMINATIONSIGNALS_H_
#define PLATFORM_TERMINATIONSIGNALS_H_

// Blocks the three in the calling thread and in every thread that it starts from then on. Called
// once, first thing, on the main thread. A signal that arrives meanwhile stays pending.
void HoldTerminationSignals();

// Called when CEF has started and the handlers are installed: lets pending and further signals
// through to them. On Linux the framework has taken the three over and calls the handlers from its
// message loop, so there they stay blocked.
void DeliverTerminationSignals();

#endif  // PLATFORM_TERMINATIONSIGNALS_H_
