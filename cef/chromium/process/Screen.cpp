#include "cef/chromium/process/Screen.h"

#include <xcb/randr.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace engine {
namespace {

constexpr int kWidth = 1000;
constexpr int kHeight = 720;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&free)>;

template <typename Reply>
Owned<Reply> Own(Reply* reply) {
  return {reply, free};
}

Owned<xcb_get_property_reply_t> Property(xcb_connection_t* connection, xcb_window_t window,
                                         xcb_atom_t property, xcb_atom_t type, uint32_t longest) {
  return Own(xcb_get_property_reply(
      connection, xcb_get_property(connection, 0, window, property, type, 0, longest), nullptr));
}

Area Common(const Area& a, const Area& b) {
  Area common;
  common.x = std::max(a.x, b.x);
  common.y = std::max(a.y, b.y);
  common.width = std::min(a.x + a.width, b.x + b.width) - common.x;
  common.height = std::min(a.y + a.height, b.y + b.height) - common.y;
  return common.width > 0 && common.height > 0 ? common : a;
}

Area PrimaryMonitor(xcb_connection_t* connection, xcb_window_t root, const Area& whole) {
  const xcb_query_extension_reply_t* randr = xcb_get_extension_data(connection, &xcb_randr_id);
  if (!randr || !randr->present) return whole;
  const auto monitors = Own(xcb_randr_get_monitors_reply(
      connection, xcb_randr_get_monitors(connection, root, 1), nullptr));
  if (!monitors) return whole;
  Area first = whole;
  auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get());
  for (bool is_first = true; it.rem > 0; xcb_randr_monitor_info_next(&it), is_first = false) {
    const Area area = {it.data->x, it.data->y, it.data->width, it.data->height};
    if (is_first) first = area;
    if (it.data->primary) return Common(whole, area);
  }
  return Common(whole, first);
}

// Of the whole desktop, where there is a window manager.
Area WorkArea(xcb_connection_t* connection, xcb_window_t root, const Area& whole) {
  constexpr char kName[] = "_NET_WORKAREA";
  const auto atom = Own(xcb_intern_atom_reply(
      connection, xcb_intern_atom(connection, 1, sizeof kName - 1, kName), nullptr));
  if (!atom || atom->atom == XCB_NONE) return whole;
  const auto reply = Property(connection, root, atom->atom, XCB_ATOM_CARDINAL, 4);
  if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 16) {
    return whole;
  }
  const auto* values = static_cast<const int32_t*>(xcb_get_property_value(reply.get()));
  return Common(whole, {values[0], values[1], values[2], values[3]});
}

double Scale(xcb_connection_t* connection, xcb_window_t root) {
  constexpr double kPlainDpi = 96;
  double scale = 1;
  if (const char* gdk = getenv("GDK_SCALE")) scale = std::max(scale, strtod(gdk, nullptr));
  constexpr uint32_t kLongest = 16 * 1024;
  const auto reply =
      Property(connection, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, kLongest);
  if (reply) {
    const std::string text(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           static_cast<size_t>(xcb_get_property_value_length(reply.get())));
    constexpr char kName[] = "Xft.dpi:";
    const size_t at = text.find(kName);
    if (at != std::string::npos) {
      scale = std::max(scale, strtod(text.c_str() + at + strlen(kName), nullptr) / kPlainDpi);
    }
  }
  constexpr double kMost = 4;
  return std::min(scale, kMost);
}

}  // namespace

Screen ReadScreen(xcb_connection_t* connection, const xcb_screen_t& root) {
  const Area whole = {0, 0, root.width_in_pixels, root.height_in_pixels};
  Screen screen;
  screen.area =
      Common(PrimaryMonitor(connection, root.root, whole), WorkArea(connection, root.root, whole));
  screen.scale = Scale(connection, root.root);
  return screen;
}

std::optional<Screen> ReadScreen() {
  std::optional<Screen> screen;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  if (!xcb_connection_has_error(connection)) {
    const auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
    if (roots.rem > 0) screen = ReadScreen(connection, *roots.data);
  }
  xcb_disconnect(connection);
  return screen;
}

Area FirstPlace(const Screen& screen) {
  const auto scaled = [&](int length) { return static_cast<int>(length / screen.scale); };
  const Area area = {scaled(screen.area.x), scaled(screen.area.y), scaled(screen.area.width),
                     scaled(screen.area.height)};
  Area place;
  place.width = std::min(kWidth, std::max(1, area.width - kFrameWidth));
  place.height = std::min(kHeight, std::max(1, area.height - kFrameHeight));
  place.x = area.x + (area.width - place.width) / 2;
  place.y = area.y + (area.height - place.height) / 2;
  return place;
}

}  // namespace engine
