#include <xcb/xcb.h>

#include <cstdlib>

#include "platform/DisplayReach.h"

std::string WhyNoDisplay() {
  const char* name = getenv("DISPLAY");
  const char* wayland = getenv("WAYLAND_DISPLAY");
  if (!name || !*name) {
    return wayland && *wayland ? "DISPLAY is not set: this is a Wayland session without XWayland"
                               : "DISPLAY is not set";
  }
  // Not Xlib, which ends the process when the server goes away just now.
  xcb_connection_t* connection = xcb_connect(name, nullptr);
  const bool failed = xcb_connection_has_error(connection) != 0;
  xcb_disconnect(connection);
  return failed ? std::string("the X server ") + name + " is gone or refuses us" : "";
}
