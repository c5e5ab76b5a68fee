// The process's connection to the display.

#ifndef PLATFORM_DISPLAY_H_
#define PLATFORM_DISPLAY_H_

// True when the process has an application object that is connected to a display. Main thread.
bool HaveDisplay();

// Creates the application object that CreateSharedApplication() has put off, which may take 100 ms.
// Does nothing where there is none to create. Main thread.
void ConnectDisplay();

#endif  // PLATFORM_DISPLAY_H_
