// The course of a single request.

#ifndef CEF_INCLUDE_CEF_RESOURCE_REQUEST_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_REQUEST_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_request_callback.h"
#include "include/cef_resource_handler.h"
#include "include/cef_response.h"

class CefCookieAccessFilter;

// Implemented by the client; runs on the IO thread, once for every hop of a redirected request.
class CefResourceRequestHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_return_value_t ReturnValue;

  // Asked first. Null: every cookie passes.
  virtual CefRefPtr<CefCookieAccessFilter> GetCookieAccessFilter(CefRefPtr<CefBrowser> /*browser*/,
                                                                 CefRefPtr<CefFrame> /*frame*/,
                                                                 CefRefPtr<CefRequest> /*request*/);
  // Before the request leaves.
  virtual ReturnValue OnBeforeResourceLoad(CefRefPtr<CefBrowser> /*browser*/,
                                           CefRefPtr<CefFrame> /*frame*/,
                                           CefRefPtr<CefRequest> /*request*/,
                                           CefRefPtr<CefRequestCallback> /*callback*/) {
    return RV_CONTINUE;
  }
  // Null: the network answers.
  virtual CefRefPtr<CefResourceHandler> GetResourceHandler(CefRefPtr<CefBrowser> /*browser*/,
                                                           CefRefPtr<CefFrame> /*frame*/,
                                                           CefRefPtr<CefRequest> /*request*/) {
    return nullptr;
  }
  virtual void OnResourceRedirect(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                                  CefRefPtr<CefRequest> /*request*/,
                                  CefRefPtr<CefResponse> /*response*/, CefString& /*new_url*/) {}
  // The headers of the final response have arrived; not called for redirects. The cookies that the
  // response sets are not in the jar yet.
  virtual bool OnResourceResponse(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                                  CefRefPtr<CefRequest> /*request*/,
                                  CefRefPtr<CefResponse> /*response*/) {
    return false;
  }
};

// Decides about single cookies. Implemented by the client; runs on the IO thread.
class CefCookieAccessFilter : public virtual CefBaseRefCounted {
 public:
  virtual bool CanSendCookie(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                             CefRefPtr<CefRequest> /*request*/, const CefCookie& /*cookie*/) {
    return true;
  }
  virtual bool CanSaveCookie(CefRefPtr<CefBrowser> /*browser*/, CefRefPtr<CefFrame> /*frame*/,
                             CefRefPtr<CefRequest> /*request*/, CefRefPtr<CefResponse> /*response*/,
                             const CefCookie& /*cookie*/) {
    return true;
  }
};

inline CefRefPtr<CefCookieAccessFilter> CefResourceRequestHandler::GetCookieAccessFilter(
    CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, CefRefPtr<CefRequest>) {
  return nullptr;
}

#endif  // CEF_INCLUDE_CEF_RESOURCE_REQUEST_HANDLER_H_
