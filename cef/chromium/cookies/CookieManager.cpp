#include "cef/chromium/cookies/CookieManager.h"

#include "cef/chromium/base/MessageLoop.h"

namespace engine {
namespace {

void ToCefCookie(const Cookie& stored, CefCookie& cookie) {
  CefString(&cookie.name).FromString(stored.name);
  CefString(&cookie.value).FromString(stored.value);
  CefString(&cookie.domain).FromString(stored.domain);
  CefString(&cookie.path).FromString(stored.path);
  cookie.secure = stored.secure;
  cookie.httponly = stored.http_only;
}

Cookie FromCefCookie(const CefCookie& cookie) {
  Cookie result;
  result.name = CefString(&cookie.name).ToString();
  result.value = CefString(&cookie.value).ToString();
  result.domain = CefString(&cookie.domain).ToString();
  result.path = CefString(&cookie.path).ToString();
  result.secure = cookie.secure != 0;
  result.http_only = cookie.httponly != 0;
  return result;
}

// Exactly this cookie.
CookieStore::Filter Only(const Cookie& wanted) {
  return [wanted](const Cookie& cookie) {
    return cookie.name == wanted.name && cookie.domain == wanted.domain &&
           cookie.path == wanted.path && cookie.partition == wanted.partition;
  };
}

void VisitOnUi(CookieStore& store, const CookieStore::Cookies& cookies,
               const CefRefPtr<CefCookieVisitor>& visitor) {
  const int total = static_cast<int>(cookies.size());
  for (int count = 0; count < total; ++count) {
    CefCookie cookie;
    ToCefCookie(cookies[static_cast<size_t>(count)], cookie);
    bool remove = false;
    const bool go_on = visitor->Visit(cookie, count, total, remove);
    if (remove) store.Delete(Only(cookies[static_cast<size_t>(count)]), [](int) {});
    if (!go_on) return;
  }
}

template <typename Callback, typename Result>
void PostResult(const CefRefPtr<Callback>& callback, Result result) {
  if (!callback.get()) return;
  MessageLoop::Get().PostTask([callback, result] { callback->OnComplete(result); });
}

}  // namespace

void PostCompletion(CefRefPtr<CefCompletionCallback> callback) {
  if (callback.get()) MessageLoop::Get().PostTask([callback] { callback->OnComplete(); });
}

void CookieManager::Visit(CookieStore::Filter filter, CefRefPtr<CefCookieVisitor> visitor) {
  CookieStore* store = &store_;
  store_.Get(std::move(filter), [store, visitor](const CookieStore::Cookies& cookies) {
    MessageLoop::Get().PostTask([store, cookies, visitor] { VisitOnUi(*store, cookies, visitor); });
  });
}

bool CookieManager::VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                                    CefRefPtr<CefCookieVisitor> visitor) {
  Url parsed;
  if (!visitor.get() || !ParseUrl(url.ToString(), &parsed)) return false;
  Visit(
      [parsed, includeHttpOnly](const Cookie& cookie) {
        return (includeHttpOnly || !cookie.http_only) && CookieMatchesUrl(cookie, parsed);
      },
      visitor);
  return true;
}

bool CookieManager::SetCookie(const CefString& url, const CefCookie& cookie,
                              CefRefPtr<CefSetCookieCallback> callback) {
  const std::string address = url.ToString();
  const Cookie wanted = FromCefCookie(cookie);
  switch (CheckSetCookie(address, wanted)) {
    case SetCookieCheck::kInvalidUrl:
      return false;
    case SetCookieCheck::kRefused:
      PostResult(callback, false);
      return true;
    case SetCookieCheck::kStorable:
      break;
  }
  store_.Set(address, wanted, [callback](bool stored) { PostResult(callback, stored); });
  return true;
}

bool CookieManager::DeleteCookies(const CefString& url, const CefString& cookie_name,
                                  CefRefPtr<CefDeleteCookiesCallback> callback) {
  const std::string name = cookie_name.ToString();
  const DeleteCookiesScope scope = CheckDeleteCookies(url.ToString(), name);
  if (scope == DeleteCookiesScope::kInvalidUrl) return false;
  const auto done = [callback](int deleted) { PostResult(callback, deleted); };
  if (scope == DeleteCookiesScope::kAll) {
    store_.DeleteAll(done);
    return true;
  }
  Url parsed;
  ParseUrl(url.ToString(), &parsed);
  store_.Delete([scope, parsed, name](
                    const Cookie& cookie) { return DeletionConcerns(scope, parsed, name, cookie); },
                done);
  return true;
}

bool CookieManager::FlushStore(CefRefPtr<CefCompletionCallback> callback) {
  if (callback.get()) store_.WhenSettled([callback] { PostCompletion(callback); });
  return true;
}

}  // namespace engine
