// What happens when the display goes away in the middle. Left alone, X's library ends the process.
//
// Linux only; everything here belongs to the main thread.

#ifndef PLATFORM_DISPLAYLOSS_H_
#define PLATFORM_DISPLAYLOSS_H_

// From now on the loss of a display is thrown, as an NSException, by the call that notices it:
// while AppKit connects, nothing else could end that call.
void ThrowDisplayLoss();

// From now on the process outlives the loss of its display: calls to it then do nothing. `lost` is
// called as soon as one notices, in the middle of that call, so it must only take note; it may be
// called again. May be null. Does nothing without a display.
void WatchDisplay(void (*lost)());

// The connection's descriptor, for POLLRDHUP; -1 without a display.
int DisplayConnection();

// Whether the display has gone, asked of the connection itself.
bool DisplayHasGone();

// Gives up a display that has gone: from then on the process has none. Must not be called from
// within AppKit.
void LeaveDisplay();

#endif  // PLATFORM_DISPLAYLOSS_H_
