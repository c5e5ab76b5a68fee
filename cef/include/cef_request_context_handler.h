// The events of a request context.

#ifndef CEF_INCLUDE_CEF_REQUEST_CONTEXT_HANDLER_H_
#define CEF_INCLUDE_CEF_REQUEST_CONTEXT_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_request_context.h"
#include "include/cef_web_plugin.h"

// Implemented by the client.
class CefRequestContextHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_plugin_policy_t PluginPolicy;

  // UI thread.
  virtual void OnRequestContextInitialized(CefRefPtr<CefRequestContext> /*request_context*/) {}
  // Any thread. True: `plugin_policy` was changed.
  virtual bool OnBeforePluginLoad(const CefString& /*mime_type*/, const CefString& /*plugin_url*/,
                                  bool /*is_main_frame*/, const CefString& /*top_origin_url*/,
                                  CefRefPtr<CefWebPluginInfo> /*plugin_info*/,
                                  PluginPolicy* /*plugin_policy*/) {
    return false;
  }
};

#endif  // CEF_INCLUDE_CEF_REQUEST_CONTEXT_HANDLER_H_
