// Bringing a browser window to the front of the user's screen.

#ifndef PLATFORM_RAISEWINDOW_H_
#define PLATFORM_RAISEWINDOW_H_

// Raises the window and gives it the keyboard. The handle is what the browser host reports: an
// NSView on macOS, an X window id elsewhere, which may belong to another process. Null, a window
// that is gone and a missing display are ignored. Main thread.
void RaiseWindow(void* window_handle);

#endif  // PLATFORM_RAISEWINDOW_H_
