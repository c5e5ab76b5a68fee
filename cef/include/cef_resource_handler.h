// A response made by the client.

#ifndef CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
#define CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_callback.h"
#include "include/cef_request.h"
#include "include/cef_response.h"

// Answers of CefResourceHandler::Skip and Read that come later. Implemented by the framework.
class CefResourceSkipCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(int64 bytes_skipped) = 0;
};

class CefResourceReadCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(int bytes_read) = 0;
};

// Implemented by the client. Nothing here serves a request; Chromium always does.
class CefResourceHandler : public virtual CefBaseRefCounted {
 public:
  virtual bool Open(CefRefPtr<CefRequest> /*request*/, bool& handle_request,
                    CefRefPtr<CefCallback> /*callback*/) {
    handle_request = false;
    return false;
  }
  virtual bool ProcessRequest(CefRefPtr<CefRequest> /*request*/,
                              CefRefPtr<CefCallback> /*callback*/) {
    return false;
  }
  virtual void GetResponseHeaders(CefRefPtr<CefResponse> response, int64& response_length,
                                  CefString& redirectUrl) = 0;
  virtual bool Skip(int64 /*bytes_to_skip*/, int64& bytes_skipped,
                    CefRefPtr<CefResourceSkipCallback> /*callback*/) {
    bytes_skipped = -2;
    return false;
  }
  virtual bool Read(void* /*data_out*/, int /*bytes_to_read*/, int& bytes_read,
                    CefRefPtr<CefResourceReadCallback> /*callback*/) {
    bytes_read = -1;
    return false;
  }
  virtual bool ReadResponse(void* /*data_out*/, int /*bytes_to_read*/, int& bytes_read,
                            CefRefPtr<CefCallback> /*callback*/) {
    bytes_read = -2;
    return false;
  }
  virtual void Cancel() = 0;
};

#endif  // CEF_INCLUDE_CEF_RESOURCE_HANDLER_H_
