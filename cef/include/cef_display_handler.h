// What the browser displays besides the page.

#ifndef CEF_INCLUDE_CEF_DISPLAY_HANDLER_H_
#define CEF_INCLUDE_CEF_DISPLAY_HANDLER_H_

#include <vector>

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"

// Implemented by the client; runs on the UI thread.
class CefDisplayHandler : public virtual CefBaseRefCounted {
 public:
  virtual void OnAddressChange(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                               const CefString& /*url*/) {}
  // The title may be empty, and may come several times unchanged.
  virtual void OnTitleChange(CefRefPtr<CefBrowser> /*browser*/, const CefString& /*title*/) {}
  virtual void OnFaviconURLChange(CefRefPtr<CefBrowser> /*browser*/,
                                  const std::vector<CefString>& /*icon_urls*/) {}
  virtual void OnFullscreenModeChange(CefRefPtr<CefBrowser> /*browser*/, bool /*fullscreen*/) {}
  // True: the client shows the tooltip itself.
  virtual bool OnTooltip(CefRefPtr<CefBrowser> /*browser*/, CefString& /*text*/) { return false; }
  virtual void OnStatusMessage(CefRefPtr<CefBrowser> /*browser*/, const CefString& /*value*/) {}
  // A line for the page's console. True keeps it out of the framework's log. `source` is an
  // address and may be empty.
  virtual bool OnConsoleMessage(CefRefPtr<CefBrowser> /*browser*/, cef_log_severity_t /*level*/,
                                const CefString& /*message*/, const CefString& /*source*/,
                                int /*line*/) {
    return false;
  }
  virtual bool OnAutoResize(CefRefPtr<CefBrowser> /*browser*/, const CefSize& /*new_size*/) {
    return false;
  }
  // From 0 to 1.
  virtual void OnLoadingProgressChange(CefRefPtr<CefBrowser> /*browser*/, double /*progress*/) {}
};

#endif  // CEF_INCLUDE_CEF_DISPLAY_HANDLER_H_
