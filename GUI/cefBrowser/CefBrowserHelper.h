// Small pieces that the sessions, the handler and the driver share.

#ifndef GUI_CEFBROWSER_CEFBROWSERHELPER_H_
#define GUI_CEFBROWSER_CEFBROWSERHELPER_H_

#include "include/cef_callback.h"
#include "include/cef_cookie.h"
#include "include/cef_request_context.h"
#include "include/cef_request_context_handler.h"
#include "include/cef_web_plugin.h"

// A cookie visitor that only logs: the cookie's name and the length of its value, never the value.
// Called on the UI thread, once per cookie.
class Visitor : public CefCookieVisitor {
 public:
  // Returns true (go on visiting); `deleteCookie` stays as it was.
  bool Visit(const CefCookie& cookie, int count, int total, bool& deleteCookie) override;

 private:
  IMPLEMENT_REFCOUNTING(Visitor);
};

// The request-context handler that every session installs. Requests go to the browser's client.
class ClientRequestContextHandler : public CefRequestContextHandler {
 public:
  void OnRequestContextInitialized(CefRefPtr<CefRequestContext> request_context) override;

  // Answers true without having changed the policy; kept on purpose.
  bool OnBeforePluginLoad(const CefString& mime_type, const CefString& plugin_url,
                          bool is_main_frame, const CefString& top_origin_url,
                          CefRefPtr<CefWebPluginInfo> plugin_info,
                          PluginPolicy* plugin_policy) override;

 private:
  IMPLEMENT_REFCOUNTING(ClientRequestContextHandler);
};

// The completion callback of the handler's close path. Only logs. Any thread; CEF may never call it
// when the loop has ended before.
class AuthCompletionCallback : public CefCompletionCallback {
 public:
  void OnComplete() override;

 private:
  IMPLEMENT_REFCOUNTING(AuthCompletionCallback);
};

// A context that shares the cookie store of the global one; null when CEF is not running.
CefRefPtr<CefRequestContext> CreateSharedRequestContext();

#endif  // GUI_CEFBROWSER_CEFBROWSERHELPER_H_
