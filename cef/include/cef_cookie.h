// The cookie jar.

#ifndef CEF_INCLUDE_CEF_COOKIE_H_
#define CEF_INCLUDE_CEF_COOKIE_H_

#include "include/cef_base.h"
#include "include/cef_callback.h"

// Receives cookies one by one. Implemented by the client; runs on the UI thread.
class CefCookieVisitor : public virtual CefBaseRefCounted {
 public:
  // `count` counts from 0 up to `total` - 1. Setting `deleteCookie` removes this cookie; returning
  // false ends the visit. Not called at all when no cookie matches.
  virtual bool Visit(const CefCookie& cookie, int count, int total, bool& deleteCookie) = 0;
};

// Told whether a cookie could be set. Implemented by the client; runs on the UI thread.
class CefSetCookieCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete(bool success) = 0;
};

// Told how many cookies were deleted, -1 when that is unknown. Implemented by the client; runs on
// the UI thread.
class CefDeleteCookiesCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete(int num_deleted) = 0;
};

// Implemented by the framework. Every operation returns at once and takes effect in call order;
// what it returns only says whether it was started. Callbacks may be null. From any thread.
class CefCookieManager : public virtual CefBaseRefCounted {
 public:
  // The cookies that would be sent to `url`: longer paths first, then older cookies. False when the
  // address is empty or `visitor` null.
  virtual bool VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                               CefRefPtr<CefCookieVisitor> visitor) = 0;
  // The address supplies what the cookie leaves open. False when the address is empty or invalid.
  virtual bool SetCookie(const CefString& url, const CefCookie& cookie,
                         CefRefPtr<CefSetCookieCallback> callback) = 0;
  // Both empty: all cookies. Without a name: the cookies of that host; with both: cookies of that
  // name that match the address. False when a given address is invalid.
  virtual bool DeleteCookies(const CefString& url, const CefString& cookie_name,
                             CefRefPtr<CefDeleteCookiesCallback> callback) = 0;
  // Writes the jar to disk.
  virtual bool FlushStore(CefRefPtr<CefCompletionCallback> callback) = 0;
};

#endif  // CEF_INCLUDE_CEF_COOKIE_H_
