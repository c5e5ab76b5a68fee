#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/DialogWindow.h"
#include "platform/XWindows.h"

namespace {

// The class that the browser's window has as well, so that desktops show the two as one.
char kInstance[] = "embedded-browser";
char kClass[] = "CorvaneSecure";

// From the browser to this process there are one or two starters.
constexpr int kMostGenerations = 6;

pid_t ParentOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  // The program's name may hold blanks and parentheses.
  const size_t name_end = line.rfind(')');
  if (name_end == std::string::npos) return 0;
  std::istringstream rest(line.substr(name_end + 1));
  char state = 0;
  pid_t parent = 0;
  rest >> state >> parent;
  return parent;
}

bool IsOurs(Display* display, Window window) {
  const auto id = NumbersOfWindow(display, window, "_NET_WM_PID");
  pid_t process = id.empty() ? 0 : static_cast<pid_t>(id[0]);
  for (int i = 0; process > 1 && i < kMostGenerations; ++i, process = ParentOf(process)) {
    if (process == getpid()) return true;
  }
  return false;
}

bool IsBrowser(Display* display, Window window) {
  const auto id = NumbersOfWindow(display, window, "_NET_WM_PID");
  return !id.empty() && static_cast<pid_t>(id[0]) != getpid() && IsOurs(display, window) &&
         PlaceOfWindow(display, window).has_value();
}

Window ActiveWindow(Display* display) {
  const auto active = NumbersOfWindow(display, DefaultRootWindow(display), "_NET_ACTIVE_WINDOW");
  return active.empty() ? None : active[0];
}

// From the lowest to the uppermost.
std::vector<Window> AllWindows(Display* display) {
  const Window root = DefaultRootWindow(display);
  const auto managed = NumbersOfWindow(display, root, "_NET_CLIENT_LIST_STACKING");
  if (HasWindowManager(display) && !managed.empty()) return managed;
  Window ignored, *children = nullptr;
  unsigned int count = 0;
  std::vector<Window> windows;
  if (XQueryTree(display, root, &ignored, &ignored, &children, &count) && children) {
    windows.assign(children, children + count);
    XFree(children);
  }
  return windows;
}

}  // namespace

bool HasWindowManager(Display* display) {
  const auto check =
      NumbersOfWindow(display, DefaultRootWindow(display), "_NET_SUPPORTING_WM_CHECK");
  // One that has gone leaves the property behind.
  return !check.empty() && !NumbersOfWindow(display, check[0], "_NET_SUPPORTING_WM_CHECK").empty();
}

Window BrowserWindowOfProcess(Display* display) {
  const Window active = ActiveWindow(display);
  if (active != None && IsBrowser(display, active)) return active;
  const std::vector<Window> windows = AllWindows(display);
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (IsBrowser(display, *window)) return *window;
  }
  return None;
}

bool UserIsElsewhere(Display* display) {
  if (!HasWindowManager(display)) return false;
  const Window active = ActiveWindow(display);
  // One that has just gone may still be named.
  return active != None && PlaceOfWindow(display, active) && !IsOurs(display, active);
}

void DescribeDialog(Display* display, Window dialog) {
  XClassHint names = {kInstance, kClass};
  XSetClassHint(display, dialog, &names);
  SetNumbersOfWindow(display, dialog, "_NET_WM_PID", XA_CARDINAL,
                     {static_cast<unsigned long>(getpid())});
  SetAtomsOfWindow(display, dialog, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DIALOG"});
}

void LetTakeKeyboard(Display* display, Window dialog, bool may) {
  std::vector<const char*> states = {"_NET_WM_STATE_MODAL"};
  static const char kLastUse[] = "_NET_WM_USER_TIME";
  if (may) {
    XDeleteProperty(display, dialog, XInternAtom(display, kLastUse, False));
  } else {
    SetNumbersOfWindow(display, dialog, kLastUse, XA_CARDINAL, {0});
    states.push_back("_NET_WM_STATE_DEMANDS_ATTENTION");
  }
  SetAtomsOfWindow(display, dialog, "_NET_WM_STATE", states);
}

void AttachDialog(Display* display, Window dialog, Window browser) {
  XSetTransientForHint(display, dialog, browser);
}

void GiveKeyboard(Display* display, Window window) {
  PassOverXErrors errors(display);
  if (HasWindowManager(display)) {
    constexpr long kAsTheUser = 2, kNow = CurrentTime;
    XEvent wish = {};
    wish.xclient.type = ClientMessage;
    wish.xclient.window = window;
    wish.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
    wish.xclient.format = 32;
    wish.xclient.data.l[0] = kAsTheUser;
    wish.xclient.data.l[1] = kNow;
    XSendEvent(display, DefaultRootWindow(display), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &wish);
  } else if (PlaceOfWindow(display, window)) {
    XSetInputFocus(display, window, RevertToParent, CurrentTime);
  }
}
