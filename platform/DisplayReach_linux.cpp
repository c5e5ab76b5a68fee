#include <X11/Xlib.h>

#include <cstdlib>

#include "platform/DisplayReach.h"

std::string WhyNoDisplay() {
  const char* name = getenv("DISPLAY");
  const char* wayland = getenv("WAYLAND_DISPLAY");
  if (!name || !*name) {
    return wayland && *wayland ? "DISPLAY is not set: this is a Wayland session without XWayland"
                               : "DISPLAY is not set";
  }
  Display* display = XOpenDisplay(name);
  if (!display) return std::string("the X server ") + name + " is gone or refuses us";
  XCloseDisplay(display);
  return "";
}
