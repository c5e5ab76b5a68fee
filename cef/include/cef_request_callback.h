// The answer to a question about a request.

#ifndef CEF_INCLUDE_CEF_REQUEST_CALLBACK_H_
#define CEF_INCLUDE_CEF_REQUEST_CALLBACK_H_

#include "include/cef_base.h"

// Implemented by the framework; to be used once, on any thread.
class CefRequestCallback : public virtual CefBaseRefCounted {
 public:
  // Lets the request go on, or ends it.
  virtual void Continue(bool allow) = 0;
  virtual void Cancel() = 0;
};

#endif  // CEF_INCLUDE_CEF_REQUEST_CALLBACK_H_
