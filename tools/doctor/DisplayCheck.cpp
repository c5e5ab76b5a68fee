// The display that the window would appear on.

#include <X11/Xlib.h>

#include <cstdlib>
#include <string>

#include "tools/doctor/Checks.h"

namespace doctor {

Finding CheckDisplay() {
  const char* name = getenv("DISPLAY");
  const char* wayland = getenv("WAYLAND_DISPLAY");
  if (!name || !*name) {
    return Failure("display", wayland && *wayland
                                  ? "DISPLAY is not set: this is a Wayland session without XWayland"
                                  : "DISPLAY is not set");
  }
  Display* display = XOpenDisplay(name);
  if (!display) {
    return Failure("display", std::string("the X server ") + name + " is gone or refuses us");
  }
  XCloseDisplay(display);
  return Ok("display", name);
}

}  // namespace doctor
