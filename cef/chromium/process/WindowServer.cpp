#include "cef/chromium/process/WindowServer.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/process/AppWindow.h"
#include "cef/chromium/process/Product.h"

namespace engine {
namespace {

// WM_HINTS, of which only the group is used.
constexpr uint32_t kInputHint = 1;
constexpr uint32_t kGroupHint = 64;
struct Hints {
  uint32_t flags, input, state, pixmap, icon_window, icon_x, icon_y, icon_mask, group;
};

// Frames may move a window by so much; it still counts as where it was put.
constexpr int kTolerance = 48;
constexpr int kStep = 32;

xcb_atom_t Atom(xcb_connection_t* connection, const char* name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(strlen(name)), name);
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
  const xcb_atom_t atom = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_NONE);
  free(reply);
  return atom;
}

// The nearest place within the screen that leaves room for a frame; what is larger is cut.
Area Within(const Screen& whole, Area area) {
  Area screen = whole.area;
  screen.width = std::max(1, screen.width - static_cast<int>(kFrameWidth * whole.scale));
  screen.height = std::max(1, screen.height - static_cast<int>(kFrameHeight * whole.scale));
  area.width = std::min(area.width, screen.width);
  area.height = std::min(area.height, screen.height);
  area.x = std::clamp(area.x, screen.x, screen.x + screen.width - area.width);
  area.y = std::clamp(area.y, screen.y, screen.y + screen.height - area.height);
  return area;
}

}  // namespace

void WindowServer::OnWindow(WindowHandler came, WindowHandler gone) {
  came_ = std::move(came);
  gone_ = std::move(gone);
}

void WindowServer::Start() {
  if (connection_) return;
  connection_ = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(connection_)) {
    Leave();
    return;
  }
  const xcb_screen_t* root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  root_ = root->root;
  screen_ = ReadScreen(connection_, *root);
  utf8_ = Atom(connection_, "UTF8_STRING");
  name_ = Atom(connection_, "_NET_WM_NAME");
  icon_atom_ = Atom(connection_, "_NET_WM_ICON");
  const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
  IoThread::Get().Watch(xcb_get_file_descriptor(connection_), POLLIN, [this](short) { Serve(); });
  Serve();
}

void WindowServer::Leave() {
  xcb_disconnect(std::exchange(connection_, nullptr));
  questions_.clear();
  windows_.clear();
}

// Sending may read what has come meanwhile, which the descriptor then no longer tells of; so
// whoever has sent something comes here.
void WindowServer::Serve() {
  if (!connection_ || std::exchange(serving_, true)) return;
  for (bool more = true; more;) {
    more = false;
    xcb_flush(connection_);
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
      more = true;
      OnEvent(*event);
      free(event);
    }
    while (TakeAnswer()) more = true;
  }
  serving_ = false;
  if (!xcb_connection_has_error(connection_)) return;
  IoThread::Get().Unwatch(xcb_get_file_descriptor(connection_));
  Leave();
}

bool WindowServer::TakeAnswer() {
  if (questions_.empty()) return false;
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (!xcb_poll_for_reply(connection_, questions_.front().sequence, &reply, &error)) return false;
  const Question question = std::move(questions_.front());
  questions_.pop_front();
  // Without one the window has gone meanwhile.
  if (reply) question.answer(reply);
  free(reply);
  free(error);
  return true;
}

template <typename Reply>
void WindowServer::Ask(unsigned sequence, std::function<void(const Reply&)> answer) {
  questions_.push_back({sequence, [answer = std::move(answer)](const void* reply) {
                          answer(*static_cast<const Reply*>(reply));
                        }});
}

void WindowServer::OnEvent(const xcb_generic_event_t& event) {
  const void* body = &event;
  switch (event.response_type & 0x7F) {
    case XCB_CREATE_NOTIFY: {
      const auto& created = *static_cast<const xcb_create_notify_event_t*>(body);
      if (!created.override_redirect) OnCreated(created.window);
      break;
    }
    case XCB_PROPERTY_NOTIFY: {
      const auto& changed = *static_cast<const xcb_property_notify_event_t*>(body);
      OnProperty(changed.window, changed.atom);
      break;
    }
    case XCB_MAP_NOTIFY: {
      // A window of somebody else.
      const Window window = static_cast<const xcb_map_notify_event_t*>(body)->window;
      const uint32_t none = 0;
      if (windows_.count(window)) break;
      xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &none);
      break;
    }
    case XCB_DESTROY_NOTIFY:
      OnDestroyed(static_cast<const xcb_destroy_notify_event_t*>(body)->window);
      break;
    default:;
  }
}

void WindowServer::OnCreated(Window window) {
  const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
  AskForClass(window);
}

void WindowServer::AskForClass(Window window) {
  constexpr uint32_t kLongest = 256;
  const auto cookie =
      xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, kLongest);
  Ask<xcb_get_property_reply_t>(
      cookie.sequence,
      [this, window](const xcb_get_property_reply_t& reply) { OnClass(window, reply); });
}

void WindowServer::OnClass(Window window, const xcb_get_property_reply_t& reply) {
  const std::string text(static_cast<const char*>(xcb_get_property_value(&reply)),
                         static_cast<size_t>(xcb_get_property_value_length(&reply)));
  if (text.find(AppWindowMark()) == std::string::npos || windows_.count(window)) return;
  windows_[window].title = leader_ == XCB_NONE ? first_title_ : kUnknownTitle;
  if (leader_ == XCB_NONE) leader_ = window;
  PutTitle(window, name_);
  PutTitle(window, XCB_ATOM_WM_NAME);
  const std::string name = std::string(kWindowInstance) + '\0' + kWindowClass + '\0';
  Put(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, static_cast<uint32_t>(name.size()),
      name.data());
  const Hints hints = {kInputHint | kGroupHint, 1, 0, 0, 0, 0, 0, 0, leader_};
  Put(window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, sizeof hints / 4, &hints);
  PutIcon(window);
  if (came_) came_(window);
}

void WindowServer::OnProperty(Window window, xcb_atom_t property) {
  const auto found = windows_.find(window);
  if (found == windows_.end()) {
    if (property == XCB_ATOM_WM_CLASS) AskForClass(window);
    return;
  }
  // One report for each change: after the last of somebody else's there is always one more of ours.
  int& own = found->second.own_changes[property];
  if (own > 0) {
    --own;
  } else if (property == name_ || property == XCB_ATOM_WM_NAME) {
    PutTitle(window, property);
  } else if (property == icon_atom_) {
    PutIcon(window);
  }
}

void WindowServer::OnDestroyed(Window window) {
  if (windows_.erase(window) == 0) return;
  if (leader_ == window) leader_ = windows_.empty() ? XCB_NONE : windows_.begin()->first;
  if (gone_) gone_(window);
}

void WindowServer::Put(Window window, xcb_atom_t property, xcb_atom_t type, uint8_t format,
                       uint32_t count, const void* data) {
  ++windows_[window].own_changes[property];
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, format, count,
                      data);
}

void WindowServer::PutTitle(Window window, xcb_atom_t property) {
  const std::string title = windows_[window].title;
  Put(window, property, utf8_, 8, static_cast<uint32_t>(title.size()), title.data());
}

void WindowServer::PutIcon(Window window) {
  if (icon_.empty()) return;
  Put(window, icon_atom_, XCB_ATOM_CARDINAL, 32, static_cast<uint32_t>(icon_.size()), icon_.data());
}

void WindowServer::SetIcon(std::vector<uint32_t> icon) {
  icon_ = std::move(icon);
  for (const auto& [window, dress] : windows_) PutIcon(window);
  Serve();
}

void WindowServer::SetTitle(Window window, const std::string& title) {
  const auto found = windows_.find(window);
  if (found == windows_.end() || found->second.title == title) return;
  found->second.title = title;
  PutTitle(window, name_);
  PutTitle(window, XCB_ATOM_WM_NAME);
  Serve();
}

void WindowServer::Centre(Window window) {
  Place(window, window, [this](const Area& now, int x, int y) {
    Area area = Within(screen_, now);
    area.x = screen_.area.x + (screen_.area.width - area.width) / 2;
    area.y = screen_.area.y + (screen_.area.height - area.height) / 2;
    const bool there = std::abs(area.x - x) <= kTolerance && std::abs(area.y - y) <= kTolerance;
    return there ? Area{x, y, area.width, area.height} : area;
  });
}

void WindowServer::PutBeside(Window window, Window other) {
  if (!windows_.count(window) || !windows_.count(other)) return;
  Put(window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 32, 1, &other);
  Place(window, other, [this](const Area& now, int x, int y) {
    const int step = static_cast<int>(kStep * screen_.scale);
    return Within(screen_, {x + step, y + step, now.width, now.height});
  });
}

void WindowServer::Place(Window window, Window relative_to,
                         std::function<Area(const Area&, int, int)> then) {
  if (!connection_) return;
  const auto size = std::make_shared<Area>();
  Ask<xcb_get_geometry_reply_t>(xcb_get_geometry(connection_, window).sequence,
                                [size](const xcb_get_geometry_reply_t& reply) {
                                  size->width = reply.width;
                                  size->height = reply.height;
                                });
  const auto place = [this, window, relative_to, size,
                      then](const xcb_translate_coordinates_reply_t& reply) {
    if (size->width == 0) return;
    const Area area = then(*size, reply.dst_x, reply.dst_y);
    const bool moves = window != relative_to || area.x != reply.dst_x || area.y != reply.dst_y;
    if (!moves && area.width == size->width && area.height == size->height) return;
    const uint32_t values[] = {static_cast<uint32_t>(area.x), static_cast<uint32_t>(area.y),
                               static_cast<uint32_t>(area.width),
                               static_cast<uint32_t>(area.height)};
    xcb_configure_window(connection_, window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values);
  };
  Ask<xcb_translate_coordinates_reply_t>(
      xcb_translate_coordinates(connection_, relative_to, root_, 0, 0).sequence, place);
  Serve();
}

}  // namespace engine
