// A request context with its cookie jar, and a command line.

#ifndef TESTS_SUPPORT_FAKECEFCONTEXT_H_
#define TESTS_SUPPORT_FAKECEFCONTEXT_H_

#include "include/cef_command_line.h"
#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"

// Every operation leaves a line with its arguments, as in
// "SetCookie(url=https://a/, name=n, value=v, domain=, path=/, secure=1, httponly=0)"; none calls
// back.
class FakeCookieManager : public CefCookieManager {
 public:
  bool VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                       CefRefPtr<CefCookieVisitor> visitor) override;
  bool SetCookie(const CefString& url, const CefCookie& cookie,
                 CefRefPtr<CefSetCookieCallback> callback) override;
  bool DeleteCookies(const CefString& url, const CefString& cookie_name,
                     CefRefPtr<CefDeleteCookiesCallback> callback) override;
  bool FlushStore(CefRefPtr<CefCompletionCallback> callback) override;

  IMPLEMENT_REFCOUNTING(FakeCookieManager);
};

// CloseAllConnections leaves "CloseAllConnections(callback=…)".
class FakeRequestContext : public CefRequestContext {
 public:
  CefRefPtr<CefCookieManager> GetCookieManager(CefRefPtr<CefCompletionCallback> callback) override;
  void CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) override;

  // Null stands for a jar that is not available. Shared contexts share it.
  CefRefPtr<FakeCookieManager> cookieManager = new FakeCookieManager;

  IMPLEMENT_REFCOUNTING(FakeRequestContext);
};

// Added switches leave "AppendSwitch(name)" or "AppendSwitch(name=value)".
class FakeCommandLine : public CefCommandLine {
 public:
  void AppendSwitch(const CefString& name) override;
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override;

  IMPLEMENT_REFCOUNTING(FakeCommandLine);
};

#endif  // TESTS_SUPPORT_FAKECEFCONTEXT_H_
