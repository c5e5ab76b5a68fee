// Bringing a browser window to the front of the user's screen.

#ifndef PLATFORM_RAISEWINDOW_H_
#define PLATFORM_RAISEWINDOW_H_

// Raises the window and gives it the keyboard. The handle is what the browser host reports: an
// NSView on macOS; on Linux always null, and nothing is to be done. Main thread.
void RaiseWindow(void* window_handle);

#endif  // PLATFORM_RAISEWINDOW_H_
