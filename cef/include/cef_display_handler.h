// What the browser displays besides the page.

#ifndef CEF_INCLUDE_CEF_DISPLAY_HANDLER_H_
#define CEF_INCLUDE_CEF_DISPLAY_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Implemented by the client; runs on the UI thread.
class CefDisplayHandler : public virtual CefBaseRefCounted {
 public:
  // The title may be empty, and may come several times unchanged.
  virtual void OnTitleChange(CefRefPtr<CefBrowser> /*browser*/, const CefString& /*title*/) {}
  // A line for the page's console. True keeps it out of the framework's log. `source` is an
  // address and may be empty.
  virtual bool OnConsoleMessage(CefRefPtr<CefBrowser> /*browser*/, cef_log_severity_t /*level*/,
                                const CefString& /*message*/, const CefString& /*source*/,
                                int /*line*/) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_DISPLAY_HANDLER_H_
