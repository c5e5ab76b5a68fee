// Arguments of the process and of a browser window. Neither can be copied by accident: the copy
// constructors are explicit, so they are passed by reference.

#ifndef CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
#define CEF_INCLUDE_INTERNAL_CEF_LINUX_H_

#include "include/internal/cef_types_linux.h"
#include "include/internal/cef_types_wrappers.h"

#define CefCursorHandle cef_cursor_handle_t
#define CefEventHandle cef_event_handle_t
#define CefWindowHandle cef_window_handle_t

// `argv` stays the caller's.
class CefMainArgs : public CefStructBase<CefTextFieldTraits<cef_main_args_t>> {
 public:
  CefMainArgs() = default;
  explicit CefMainArgs(const cef_main_args_t& other) : CefStructBase(other) {}
  explicit CefMainArgs(const CefMainArgs& other) : CefStructBase(other) {}
  CefMainArgs(int argc_value, char** argv_value) {
    argc = argc_value;
    argv = argv_value;
  }
  CefMainArgs& operator=(const CefMainArgs& other) = default;
};

class CefWindowInfo
    : public CefStructBase<CefTextFieldTraits<cef_window_info_t, &cef_window_info_t::window_name>> {
 public:
  CefWindowInfo() = default;
  explicit CefWindowInfo(const cef_window_info_t& other) : CefStructBase(other) {}
  explicit CefWindowInfo(const CefWindowInfo& other) : CefStructBase(other) {}
  CefWindowInfo& operator=(const CefWindowInfo& other) = default;

  void SetAsChild(CefWindowHandle parent, const CefRect& bounds) {
    parent_window = parent;
    x = static_cast<unsigned int>(bounds.x);
    y = static_cast<unsigned int>(bounds.y);
    width = static_cast<unsigned int>(bounds.width);
    height = static_cast<unsigned int>(bounds.height);
  }
  void SetAsWindowless(CefWindowHandle parent) {
    windowless_rendering_enabled = 1;
    parent_window = parent;
  }
};

#endif  // CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
