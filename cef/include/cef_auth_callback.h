// The answer to a server's or proxy's question for credentials.

#ifndef CEF_INCLUDE_CEF_AUTH_CALLBACK_H_
#define CEF_INCLUDE_CEF_AUTH_CALLBACK_H_

#include "include/cef_base.h"

// Implemented by the framework; to be used once, on any thread.
class CefAuthCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(const CefString& username, const CefString& password) = 0;
  virtual void Cancel() = 0;
};

#endif  // CEF_INCLUDE_CEF_AUTH_CALLBACK_H_
