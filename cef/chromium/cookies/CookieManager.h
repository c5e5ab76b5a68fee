// CefCookieManager over the cookie jar.

#ifndef CEF_CHROMIUM_COOKIES_COOKIEMANAGER_H_
#define CEF_CHROMIUM_COOKIES_COOKIEMANAGER_H_

#include "cef/chromium/cookies/CookieStore.h"
#include "include/cef_cookie.h"

namespace engine {

// Any thread. Visitors and callbacks run on the UI thread, never inside the call. There is one jar;
// managers are made anew whenever one is asked for.
class CookieManager : public CefCookieManager {
 public:
  // The store must live as long as the process.
  explicit CookieManager(CookieStore& store) : store_(store) {}

  bool VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                       CefRefPtr<CefCookieVisitor> visitor) override;
  bool SetCookie(const CefString& url, const CefCookie& cookie,
                 CefRefPtr<CefSetCookieCallback> callback) override;
  bool DeleteCookies(const CefString& url, const CefString& cookie_name,
                     CefRefPtr<CefDeleteCookiesCallback> callback) override;
  // Chromium has no such command: it writes the jar when it is closed in good order at the end of
  // the process. The callback runs when all operations so far have been carried out.
  bool FlushStore(CefRefPtr<CefCompletionCallback> callback) override;

 private:
  void Visit(CookieStore::Filter filter, CefRefPtr<CefCookieVisitor> visitor);

  CookieStore& store_;

  IMPLEMENT_REFCOUNTING(CookieManager);
};

// Runs it on the UI thread, later; null is ignored.
void PostCompletion(CefRefPtr<CefCompletionCallback> callback);

}  // namespace engine

#endif  // CEF_CHROMIUM_COOKIES_COOKIEMANAGER_H_
