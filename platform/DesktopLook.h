// How the user's desktop looks, for windows that are drawn here to look at home on it.
//
// Linux only. Reads the display's properties and a few files of the user's, starts no program, and
// takes less than a millisecond once the fonts are known.

#ifndef PLATFORM_DESKTOPLOOK_H_
#define PLATFORM_DESKTOPLOOK_H_

#include <X11/Xlib.h>

#include <string>

// Whether windows are dark: GTK_THEME decides if it is set, else any of GNOME's style, the theme
// that the session announces on the display, GTK's settings.ini and KDE's colours.
bool DesktopIsDark(Display* display);

// Pixels for a length of 1 at 96 dots per inch: the greater of Xft.dpi and GDK_SCALE, 1 to 4.
double ScaleOfDesktop(Display* display);

// The family of the system's sans-serif font.
std::string SansSerifFamily();

#endif  // PLATFORM_DESKTOPLOOK_H_
