// A view that holds a browser.

#ifndef CEF_INCLUDE_VIEWS_CEF_BROWSER_VIEW_H_
#define CEF_INCLUDE_VIEWS_CEF_BROWSER_VIEW_H_

#include "include/cef_browser.h"
#include "include/views/cef_window.h"

// Implemented by the framework; UI thread.
class CefBrowserView : public CefBaseRefCounted {
 public:
  // The view that `browser` lives in; null when it has a plain window.
  static CefRefPtr<CefBrowserView> GetForBrowser(CefRefPtr<CefBrowser> browser);

  // Null while the view is in no window.
  virtual CefRefPtr<CefWindow> GetWindow() = 0;
};

#endif  // CEF_INCLUDE_VIEWS_CEF_BROWSER_VIEW_H_
