// A view of the framework's own window toolkit.

#ifndef CEF_INCLUDE_VIEWS_CEF_VIEW_H_
#define CEF_INCLUDE_VIEWS_CEF_VIEW_H_

#include "include/cef_base.h"

class CefWindow;

// Implemented by the framework; UI thread.
class CefView : public CefBaseRefCounted {
 public:
  virtual bool IsValid() = 0;
  // Null while the view is in no window.
  virtual CefRefPtr<CefWindow> GetWindow() = 0;
};

#endif  // CEF_INCLUDE_VIEWS_CEF_VIEW_H_
