// Is there a display to show a window on? Asked before, or instead of, connecting AppKit to it.
//
// Linux only.

#ifndef PLATFORM_DISPLAYREACH_H_
#define PLATFORM_DISPLAYREACH_H_

#include <string>

// Why no window can be shown, as half a sentence for people; empty when the display that the
// environment names has taken a connection. Waits as long as that server lets it. Any thread.
std::string WhyNoDisplay();

#endif  // PLATFORM_DISPLAYREACH_H_
