// What browsers share: cookies, cache, connections.

#ifndef CEF_INCLUDE_CEF_REQUEST_CONTEXT_H_
#define CEF_INCLUDE_CEF_REQUEST_CONTEXT_H_

#include "include/cef_base.h"
#include "include/cef_callback.h"
#include "include/cef_cookie.h"

class CefRequestContextHandler;

// Implemented by the framework.
class CefRequestContext : public virtual CefBaseRefCounted {
 public:
  // Null before CefInitialize.
  static CefRefPtr<CefRequestContext> GetGlobalContext();

  // A context that shares everything with `other` and has its own handler, which may be null. Null
  // when `other` is.
  static CefRefPtr<CefRequestContext> CreateContext(CefRefPtr<CefRequestContext> other,
                                                    CefRefPtr<CefRequestContextHandler> handler);

  // `callback` may be null; it runs on the UI thread once the jar is ready.
  virtual CefRefPtr<CefCookieManager> GetCookieManager(
      CefRefPtr<CefCompletionCallback> callback) = 0;

  // Always pass a callback: the genuine framework crashes without one. It may never run when the
  // message loop ends first.
  virtual void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) = 0;
};

#endif  // CEF_INCLUDE_CEF_REQUEST_CONTEXT_H_
