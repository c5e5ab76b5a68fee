// CefRequestContext: all contexts share one profile; they differ by their handlers only.

#ifndef CEF_CHROMIUM_REQUESTCONTEXT_H_
#define CEF_CHROMIUM_REQUESTCONTEXT_H_

#include <atomic>
#include <string>

#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"

namespace engine {

class CookieStore;

// Any thread.
class RequestContext : public CefRequestContext {
 public:
  // Null before the engine runs.
  static CefRefPtr<CefRequestContext> Global();
  // A context beside `other`; without a handler, `other` itself.
  static CefRefPtr<CefRequestContext> Share(CefRefPtr<CefRequestContext> other,
                                            CefRefPtr<CefRequestContextHandler> handler);

  RequestContext(CookieStore& store, const std::string& cache_path,
                 CefRefPtr<CefRequestContextHandler> handler)
      : store_(store), cache_path_(cache_path), handler_(handler) {}

  bool IsSame(CefRefPtr<CefRequestContext> other) override { return other.get() == this; }
  bool IsSharingWith(CefRefPtr<CefRequestContext> other) override { return other.get() != nullptr; }
  bool IsGlobal() override { return !handler_.get(); }
  CefRefPtr<CefRequestContextHandler> GetHandler() override { return handler_; }
  CefString GetCachePath() override { return cache_path_; }
  CefRefPtr<CefCookieManager> GetCookieManager(CefRefPtr<CefCompletionCallback> callback) override;
  // Chromium offers none of these three without closing; only the callbacks are run.
  void ClearCertificateExceptions(CefRefPtr<CefCompletionCallback> callback) override;
  void ClearHttpAuthCredentials(CefRefPtr<CefCompletionCallback> callback) override;
  void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) override;

 private:
  CookieStore& store_;
  const std::string cache_path_;
  const CefRefPtr<CefRequestContextHandler> handler_;
  std::atomic<bool> handler_told_{false};

  IMPLEMENT_REFCOUNTING(RequestContext);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_REQUESTCONTEXT_H_
