#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSDisplayServer.h>
#include <X11/Xlibint.h>
#include <poll.h>

#include "platform/DisplayLoss.h"

namespace {

void (*g_lost)() = nullptr;

// Thrown, since calls on the way fill a buffer that nothing empties any more: Xlib would wait for
// room in it for ever, or exit. Those that clean up find it empty.
int OnLost(Display* display) {
  if (g_lost) g_lost();
  display->bufptr = display->buffer;
  [NSException raise:NSGenericException format:@"the display has gone"];
  return 0;
}

// Xlib's own would exit.
void GoOn(Display*, void*) {}

Display* Connection() { return static_cast<Display*>([GSCurrentServer() serverDevice]); }

}  // namespace

void ThrowDisplayLoss() { XSetIOErrorHandler(OnLost); }

void WatchDisplay(void (*lost)()) {
  Display* display = Connection();
  if (!display) return;
  g_lost = lost;
  XSetIOErrorHandler(OnLost);
  XSetIOErrorExitHandler(display, GoOn, nullptr);
}

int DisplayConnection() {
  Display* display = Connection();
  return display ? ConnectionNumber(display) : -1;
}

bool DisplayHasGone() {
  pollfd connection = {DisplayConnection(), POLLRDHUP, 0};
  return poll(&connection, 1, 0) > 0;
}

void LeaveDisplay() {
  Display* display = Connection();
  if (!display) return;
  // A descriptor at its end is always ready: the run loop would never rest again.
  void* const descriptor = reinterpret_cast<void*>(static_cast<intptr_t>(DisplayConnection()));
  NSString* const modes[] = {NSDefaultRunLoopMode, NSModalPanelRunLoopMode,
                             NSEventTrackingRunLoopMode, NSConnectionReplyMode};
  for (NSString* mode : modes) {
    [[NSRunLoop currentRunLoop] removeEvent:descriptor type:ET_RDESC forMode:mode all:YES];
  }
  [GSDisplayServer setCurrentServer:nil];
}
