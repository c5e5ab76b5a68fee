// Callbacks without further data.

#ifndef CEF_INCLUDE_CEF_CALLBACK_H_
#define CEF_INCLUDE_CEF_CALLBACK_H_

#include "include/cef_base.h"

// Told that something has been completed. Implemented by the client; runs on the UI thread, never
// from inside the call that it was given to.
class CefCompletionCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete() = 0;
};

#endif  // CEF_INCLUDE_CEF_CALLBACK_H_
