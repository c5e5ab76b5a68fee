// What happens when the display goes away in the middle. Left alone, X's library ends the process.
//
// Linux only; everything here but CutDisplay() belongs to the main thread.

#ifndef PLATFORM_DISPLAYLOSS_H_
#define PLATFORM_DISPLAYLOSS_H_

// From now on the loss of the display that AppKit connects to is thrown, as an NSException, by the
// call that notices it.
void ThrowDisplayLoss();

// The same from now on, and the process outlives it: later calls to the display do nothing. `lost`
// is called before it is thrown, in the middle of that call, so it must only take note. It may be
// null. Does nothing without a display.
void WatchDisplay(void (*lost)());

// The connection's descriptor, for POLLRDHUP; -1 without a display.
int DisplayConnection();

// Whether the display has gone, asked of the connection itself.
bool DisplayHasGone();

// Ends this process's connections to X servers, also one that is only being made, so that whoever
// waits for such a server finds it gone. For a display that does not answer. Any thread.
void CutDisplay();

// Gives up a display that has gone: from then on the process has none. Must not be called from
// within AppKit.
void LeaveDisplay();

#endif  // PLATFORM_DISPLAYLOSS_H_
