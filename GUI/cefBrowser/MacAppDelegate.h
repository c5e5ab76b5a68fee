// The AppKit shell of the process, for code that is not Objective-C. Main thread.

#ifndef GUI_CEFBROWSER_MACAPPDELEGATE_H_
#define GUI_CEFBROWSER_MACAPPDELEGATE_H_

// Creates the process's application object and queues the creation of its menu and delegate for the
// first turn of the message loop. To be called before CEF is initialised and before any other use
// of AppKit. Always returns 0: what goes wrong, a missing display included, is logged, and the
// process goes on without an application object that can show windows.
int MacCreateAppDelegate();

// Puts a browser's window where the user sees it. `windowHandle`:
// CefBrowserHost::GetWindowHandle(); null does nothing.
void BringToFront(void* windowHandle);

#endif  // GUI_CEFBROWSER_MACAPPDELEGATE_H_
