// Callbacks without further data.

#ifndef CEF_INCLUDE_CEF_CALLBACK_H_
#define CEF_INCLUDE_CEF_CALLBACK_H_

#include "include/cef_base.h"

// Continues or ends something that waits. Implemented by the framework.
class CefCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue() = 0;
  virtual void Cancel() = 0;
};

// Told that something has been completed. Implemented by the client; runs on the UI thread, never
// from inside the call that it was given to.
class CefCompletionCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete() = 0;
};

#endif  // CEF_INCLUDE_CEF_CALLBACK_H_
