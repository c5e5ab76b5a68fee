#include "tests/support/FakeCefContext.h"

#include "tests/support/FakeTrace.h"

namespace {

std::string Field(const cef_string_t& field) { return CefString(&field).ToString(); }

}  // namespace

bool FakeCookieManager::VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                                        CefRefPtr<CefCookieVisitor> visitor) {
  FakeTrace("VisitUrlCookies(url=" + url.ToString() +
            ", includeHttpOnly=" + (includeHttpOnly ? "true" : "false") + ")");
  if (url.empty() || !visitor.get()) return false;
  return true;
}

bool FakeCookieManager::SetCookie(const CefString& url, const CefCookie& cookie,
                                  CefRefPtr<CefSetCookieCallback>) {
  FakeTrace("SetCookie(url=" + url.ToString() + ", name=" + Field(cookie.name) +
            ", value=" + Field(cookie.value) + ", domain=" + Field(cookie.domain) +
            ", path=" + Field(cookie.path) + ", secure=" + std::to_string(cookie.secure) +
            ", httponly=" + std::to_string(cookie.httponly) + ")");
  if (url.empty()) return false;
  return true;
}

bool FakeCookieManager::DeleteCookies(const CefString& url, const CefString& cookie_name,
                                      CefRefPtr<CefDeleteCookiesCallback>) {
  FakeTrace("DeleteCookies(url=" + url.ToString() + ", name=" + cookie_name.ToString() + ")");
  return true;
}

bool FakeCookieManager::FlushStore(CefRefPtr<CefCompletionCallback>) {
  FakeTrace("FlushStore()");
  return true;
}

CefRefPtr<CefCookieManager> FakeRequestContext::GetCookieManager(CefRefPtr<CefCompletionCallback>) {
  return cookieManager.get();
}

void FakeRequestContext::CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) {
  FakeTrace(std::string("CloseAllConnections(callback=") + (callback.get() ? "yes" : "no") + ")");
}

void FakeCommandLine::AppendSwitch(const CefString& name) {
  FakeTrace("AppendSwitch(" + name.ToString() + ")");
}

void FakeCommandLine::AppendSwitchWithValue(const CefString& name, const CefString& value) {
  FakeTrace("AppendSwitch(" + name.ToString() + "=" + value.ToString() + ")");
}
