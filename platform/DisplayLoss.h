// What happens when the display goes away in the middle. Left alone, X's library ends the process.
//
// Linux only; everything here belongs to the main thread.

#ifndef PLATFORM_DISPLAYLOSS_H_
#define PLATFORM_DISPLAYLOSS_H_

// From now on the process outlives the loss of its display: calls to it then do nothing. `lost` is
// called as soon as one notices, in the middle of that call, so it must only take note; it may be
// called again. Does nothing without a display.
void WatchDisplay(void (*lost)());

// Whether the display has gone, asked of the connection itself.
bool DisplayHasGone();

// Gives up a display that has gone: from then on the process has none. Must not be called from
// within AppKit.
void LeaveDisplay();

#endif  // PLATFORM_DISPLAYLOSS_H_
