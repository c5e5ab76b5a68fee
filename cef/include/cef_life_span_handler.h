// The life of a browser.

#ifndef CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
#define CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Implemented by the client; runs on the UI thread.
class CefLifeSpanHandler : public virtual CefBaseRefCounted {
 public:
  // The first word of a new browser: its window exists, nothing has been loaded.
  virtual void OnAfterCreated(CefRefPtr<CefBrowser> /*browser*/) {}
  // The browser is about to close; true stops that, even when it was forced.
  virtual bool DoClose(CefRefPtr<CefBrowser> /*browser*/) { return false; }
  // The last word on the UI thread. References to the browser should be given up now.
  virtual void OnBeforeClose(CefRefPtr<CefBrowser> /*browser*/) {}
};

#endif  // CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
