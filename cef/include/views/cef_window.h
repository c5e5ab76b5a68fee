// A window of the framework's own window toolkit.

#ifndef CEF_INCLUDE_VIEWS_CEF_WINDOW_H_
#define CEF_INCLUDE_VIEWS_CEF_WINDOW_H_

#include "include/views/cef_panel.h"

// Implemented by the framework; UI thread.
class CefWindow : public CefPanel {
 public:
  virtual void SetTitle(const CefString& title) = 0;
  virtual CefString GetTitle() = 0;
};

#endif  // CEF_INCLUDE_VIEWS_CEF_WINDOW_H_
