// The course of loading a page.

#ifndef CEF_INCLUDE_CEF_LOAD_HANDLER_H_
#define CEF_INCLUDE_CEF_LOAD_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"

// Implemented by the client; runs on the UI thread.
class CefLoadHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_errorcode_t ErrorCode;

  // A navigation of `frame` failed; ERR_ABORTED when it was given up. Not called without a
  // `failedUrl`.
  virtual void OnLoadError(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                           ErrorCode /*errorCode*/, const CefString& /*errorText*/,
                           const CefString& /*failedUrl*/) {}
};

#endif  // CEF_INCLUDE_CEF_LOAD_HANDLER_H_
