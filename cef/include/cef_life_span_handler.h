// The life of a browser.

#ifndef CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
#define CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"

class CefClient;

// Implemented by the client; runs on the UI thread.
class CefLifeSpanHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_window_open_disposition_t WindowOpenDisposition;

  // A page wants to open a window; true forbids it. Otherwise the new browser gets `client` (which
  // is that of the opener unless it is replaced here).
  virtual bool OnBeforePopup(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                             const CefString& /*target_url*/,
                             const CefString& /*target_frame_name*/,
                             WindowOpenDisposition /*target_disposition*/, bool /*user_gesture*/,
                             const CefPopupFeatures& /*popupFeatures*/,
                             CefWindowInfo& /*windowInfo*/, CefRefPtr<CefClient>& /*client*/,
                             CefBrowserSettings& /*settings*/,
                             CefRefPtr<CefDictionaryValue>& /*extra_info*/,
                             bool* /*no_javascript_access*/) {
    return false;
  }
  // The first word of a new browser: its window exists, nothing has been loaded.
  virtual void OnAfterCreated(CefRefPtr<CefBrowser> /*browser*/) {}
  // The browser is about to close; true stops that, even when it was forced.
  virtual bool DoClose(CefRefPtr<CefBrowser> /*browser*/) { return false; }
  // The last word on the UI thread. References to the browser should be given up now.
  virtual void OnBeforeClose(CefRefPtr<CefBrowser> /*browser*/) {}
};

#endif  // CEF_INCLUDE_CEF_LIFE_SPAN_HANDLER_H_
