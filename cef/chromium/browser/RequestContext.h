// CefRequestContext: all contexts share one profile; they differ by their handlers only.

#ifndef CEF_CHROMIUM_BROWSER_REQUESTCONTEXT_H_
#define CEF_CHROMIUM_BROWSER_REQUESTCONTEXT_H_

#include <atomic>

#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"

namespace engine {

class CookieStore;

// Any thread.
class RequestContext : public CefRequestContext {
 public:
  // The store must live as long as the process; `handler` may be null.
  RequestContext(CookieStore& store, CefRefPtr<CefRequestContextHandler> handler)
      : store_(store), handler_(handler) {}

  CefRefPtr<CefCookieManager> GetCookieManager(CefRefPtr<CefCompletionCallback> callback) override;
  // Chromium offers no such thing without closing; only the callback is run.
  void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) override;

 private:
  CookieStore& store_;
  const CefRefPtr<CefRequestContextHandler> handler_;
  std::atomic<bool> handler_told_{false};

  IMPLEMENT_REFCOUNTING(RequestContext);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_REQUESTCONTEXT_H_
