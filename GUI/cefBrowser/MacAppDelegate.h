// The application object of the process, for code that is not Objective-C.

#ifndef GUI_CEFBROWSER_MACAPPDELEGATE_H_
#define GUI_CEFBROWSER_MACAPPDELEGATE_H_

// Creates the process's application object and queues the creation of its menu and delegate for the
// first turn of the message loop. To be called on the main thread before CEF is initialised and
// before any other use of AppKit. Always returns 0: what goes wrong, a missing display included, is
// logged, and the process goes on without an application object that can show windows.
int MacCreateAppDelegate();

#endif  // GUI_CEFBROWSER_MACAPPDELEGATE_H_
