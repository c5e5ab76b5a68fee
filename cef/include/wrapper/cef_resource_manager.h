// Resources that a client supplies by itself.

#ifndef CEF_INCLUDE_WRAPPER_CEF_RESOURCE_MANAGER_H_
#define CEF_INCLUDE_WRAPPER_CEF_RESOURCE_MANAGER_H_

#include "include/base/cef_macros.h"
#include "include/base/cef_ref_counted.h"
#include "include/cef_browser.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_request_callback.h"
#include "include/cef_resource_handler.h"
#include "include/wrapper/cef_helpers.h"

// Asks a list of providers for the answer to a request. The list is empty here: no provider can be
// added, so every request goes to the network. Constructed on any thread, deleted on the IO thread.
class CefResourceManager
    : public base::RefCountedThreadSafe<CefResourceManager, CefDeleteOnIOThread> {
 public:
  CefResourceManager();

  // To be called from the method of the same name of CefResourceRequestHandler. RV_CONTINUE without
  // using `callback` when no provider answers. IO thread.
  cef_return_value_t OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                          CefRefPtr<CefRequest> request,
                                          CefRefPtr<CefRequestCallback> callback);

  // The answer for `request`, null for none. IO thread.
  CefRefPtr<CefResourceHandler> GetResourceHandler(CefRefPtr<CefBrowser> browser,
                                                   CefRefPtr<CefFrame> frame,
                                                   CefRefPtr<CefRequest> request);

 private:
  friend struct CefDeleteOnThread<TID_IO>;
  ~CefResourceManager();

  DISALLOW_COPY_AND_ASSIGN(CefResourceManager);
};

#endif  // CEF_INCLUDE_WRAPPER_CEF_RESOURCE_MANAGER_H_
