// Can this process show windows?

#ifndef PLATFORM_DISPLAY_H_
#define PLATFORM_DISPLAY_H_

// True when the process has an application object that is connected to a display. Main thread.
bool HaveDisplay();

#endif  // PLATFORM_DISPLAY_H_
