// A window of the framework's own window toolkit.

#ifndef CEF_INCLUDE_VIEWS_CEF_WINDOW_H_
#define CEF_INCLUDE_VIEWS_CEF_WINDOW_H_

#include "include/cef_base.h"

// Implemented by the framework; UI thread.
class CefWindow : public CefBaseRefCounted {
 public:
  virtual void SetTitle(const CefString& title) = 0;
};

#endif  // CEF_INCLUDE_VIEWS_CEF_WINDOW_H_
