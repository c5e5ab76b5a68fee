// The client of a browser: where its handlers are asked for.

#ifndef CEF_INCLUDE_CEF_CLIENT_H_
#define CEF_INCLUDE_CEF_CLIENT_H_

#include "include/cef_base.h"
#include "include/cef_display_handler.h"
#include "include/cef_life_span_handler.h"
#include "include/cef_load_handler.h"
#include "include/cef_request_handler.h"

// Implemented by the client. The getters may be called at any time, on the UI and the IO thread;
// null leaves the subject to the framework.
class CefClient : public virtual CefBaseRefCounted {
 public:
  virtual CefRefPtr<CefDisplayHandler> GetDisplayHandler() { return nullptr; }
  virtual CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() { return nullptr; }
  virtual CefRefPtr<CefLoadHandler> GetLoadHandler() { return nullptr; }
  virtual CefRefPtr<CefRequestHandler> GetRequestHandler() { return nullptr; }
};

#endif  // CEF_INCLUDE_CEF_CLIENT_H_
