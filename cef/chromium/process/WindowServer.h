// The windows of our Chromium as the X server has them.
//
// Chromium names a window as its page wants it, shows the page's icon on it and puts what a page
// opens into the corner of the screen. A second X client, which is this, sees every change and puts
// the product's own name and icon over it before anybody has read the other.

#ifndef CEF_CHROMIUM_PROCESS_WINDOWSERVER_H_
#define CEF_CHROMIUM_PROCESS_WINDOWSERVER_H_

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cef/chromium/process/Screen.h"

namespace engine {

// IO thread only. Lives as long as the process; without a display, or once that has gone, it does
// nothing. No call waits for the server, but for Start().
class WindowServer {
 public:
  using Window = xcb_window_t;
  using WindowHandler = std::function<void(Window)>;

  // Before Start(). `came`: a window of the bare kind has been made, to be shown at once; it has
  // class, icon and a title of ours by then. Others (menus, developer tools) are left alone.
  void OnWindow(WindowHandler came, WindowHandler gone);

  void Start();

  // What the first window goes by until SetTitle(). UTF-8.
  void SetFirstTitle(const std::string& title) { first_title_ = title; }
  // As _NET_WM_ICON has it: for each size width, height and the pixels. Also on windows that exist.
  void SetIcon(std::vector<uint32_t> icon);
  // UTF-8. Whatever Chromium calls the window from now on, it goes by this.
  void SetTitle(Window window, const std::string& title);
  // In the middle of the screen; nothing happens if it is there already.
  void Centre(Window window);
  // A little below and to the right of the other one and always above it, within the screen.
  void PutBeside(Window window, Window other);

 private:
  struct Dress {
    std::string title;
    // Changes of ours that the server has not reported yet, by property.
    std::map<xcb_atom_t, int> own_changes;
  };
  // A request whose answer is to come.
  struct Question {
    unsigned sequence;
    std::function<void(const void* reply)> answer;
  };

  void Serve();
  bool TakeAnswer();
  void OnEvent(const xcb_generic_event_t& event);
  void OnCreated(Window window);
  void AskForClass(Window window);
  void OnClass(Window window, const xcb_get_property_reply_t& reply);
  void OnProperty(Window window, xcb_atom_t property);
  void OnDestroyed(Window window);
  void Leave();

  void Put(Window window, xcb_atom_t property, xcb_atom_t type, uint8_t format, uint32_t count,
           const void* data);
  void PutTitle(Window window, xcb_atom_t property);
  void PutIcon(Window window);
  // Finds out where `window` is and how large, and has `then` say where it is to be.
  void Place(Window window, Window relative_to,
             std::function<Area(const Area&, int x, int y)> then);
  template <typename Reply>
  void Ask(unsigned sequence, std::function<void(const Reply&)> answer);

  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = XCB_NONE;
  std::string first_title_;
  Screen screen_;
  xcb_atom_t utf8_ = XCB_NONE;
  xcb_atom_t name_ = XCB_NONE;
  xcb_atom_t icon_atom_ = XCB_NONE;
  std::vector<uint32_t> icon_;
  std::map<Window, Dress> windows_;
  Window leader_ = XCB_NONE;  // the first of them, which the group is called after
  std::deque<Question> questions_;
  bool serving_ = false;
  WindowHandler came_;
  WindowHandler gone_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_WINDOWSERVER_H_
