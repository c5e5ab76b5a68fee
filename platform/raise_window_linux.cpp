#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstdint>

#include "platform/RaiseWindow.h"

namespace {

// The window is another process's and may be gone at any moment; Xlib's own handler would exit.
int IgnoreError(Display*, XErrorEvent*) { return 0; }

// The display itself may go as well; the calls that are left then do nothing.
void GoOn(Display*, void*) {}

bool HasWindowManager(Display* display) {
  const Atom check = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
  Atom type = None;
  int format = 0;
  unsigned long count = 0, left = 0;
  unsigned char* value = nullptr;
  const int status = XGetWindowProperty(display, DefaultRootWindow(display), check, 0, 1, False,
                                        XA_WINDOW, &type, &format, &count, &left, &value);
  if (value) XFree(value);
  return status == Success && count == 1;
}

void AskWindowManager(Display* display, Window window) {
  constexpr long kFromApplication = 1;
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = kFromApplication;
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(display, DefaultRootWindow(display), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

}  // namespace

void RaiseWindow(void* window_handle) {
  const Window window = static_cast<Window>(reinterpret_cast<uintptr_t>(window_handle));
  if (window == None) return;
  // A connection of its own: AppKit's must not see these errors.
  Display* display = XOpenDisplay(nullptr);
  if (!display) return;
  XSetIOErrorExitHandler(display, GoOn, nullptr);
  XErrorHandler former = XSetErrorHandler(IgnoreError);
  XMapRaised(display, window);
  XSync(display, False);
  if (HasWindowManager(display)) {
    AskWindowManager(display, window);
  } else {
    XSetInputFocus(display, window, RevertToPointerRoot, CurrentTime);
  }
  XSync(display, False);
  XSetErrorHandler(former);
  XCloseDisplay(display);
}
