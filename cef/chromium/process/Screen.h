// The screen that windows are opened on.

#ifndef CEF_CHROMIUM_PROCESS_SCREEN_H_
#define CEF_CHROMIUM_PROCESS_SCREEN_H_

#include <xcb/xcb.h>

#include <optional>

namespace engine {

struct Area {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// What a window manager draws around a window at most, in a page's pixels.
inline constexpr int kFrameWidth = 16;
inline constexpr int kFrameHeight = 48;

struct Screen {
  // The primary monitor without panels; in pixels of the display.
  Area area;
  // How many of these are one of a page's, as far as the X resources and GDK_SCALE tell.
  double scale = 1;
};

// Asks the X server, which takes a round trip or two.
Screen ReadScreen(xcb_connection_t* connection, const xcb_screen_t& root);

// The same over a connection of its own; nothing without a display.
std::optional<Screen> ReadScreen();

// Where a new window is to be, in a page's pixels: as large as sign-in pages want it or as the
// screen allows, and in the middle.
Area FirstPlace(const Screen& screen);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_SCREEN_H_
