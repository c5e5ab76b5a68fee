// Makes a window of this process a dialog of the browser's window, which belongs to another
// process, in the eyes of the window manager and of the user.
//
// Linux only; for the thread that owns the connection.

#ifndef PLATFORM_DIALOGWINDOW_H_
#define PLATFORM_DIALOGWINDOW_H_

#include <X11/Xlib.h>

// The browser's window: of the visible windows of this process's children the one that the user
// works in, else the uppermost. None (0) when there is none yet.
Window BrowserWindowOfProcess(Display* display);

// Whether the user works in a window that belongs neither to this process nor to its children.
bool UserIsElsewhere(Display* display);

// Whether there is a window manager.
bool HasWindowManager(Display* display);

// Kind, class and process of the window; to be called before it is shown.
void DescribeDialog(Display* display, Window dialog);

// Whether the window manager is to give the dialog the keyboard or to draw the user's attention to
// it; to be called just before it is shown.
void LetTakeKeyboard(Display* display, Window dialog, bool may);

// Keeps the dialog above the browser's window; before it is shown or afterwards.
void AttachDialog(Display* display, Window dialog, Window browser);

// Gives the keyboard to a window that is shown or about to be, since the user is working in it.
void GiveKeyboard(Display* display, Window window);

#endif  // PLATFORM_DIALOGWINDOW_H_
