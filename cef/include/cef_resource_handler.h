// A response made by the client.

#ifndef CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_response.h"

// Implemented by the client. Nothing here serves a request; Chromium always does.
class CefResourceHandler : public virtual CefBaseRefCounted {
 public:
  virtual void GetResponseHeaders(CefRefPtr<CefResponse> response, int64& response_length,
                                  CefString& redirectUrl) = 0;
  virtual void Cancel() = 0;
};

#endif  // CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
