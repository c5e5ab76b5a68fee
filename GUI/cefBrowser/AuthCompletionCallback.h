// The completion callback of the handler's close path.

#ifndef GUI_CEFBROWSER_AUTHCOMPLETIONCALLBACK_H_
#define GUI_CEFBROWSER_AUTHCOMPLETIONCALLBACK_H_

#include "include/cef_callback.h"

// Only logs. Any thread; CEF may never call it when the loop has ended before.
class AuthCompletionCallback : public CefCompletionCallback {
 public:
  void OnComplete() override;

 private:
  IMPLEMENT_REFCOUNTING(AuthCompletionCallback);
};

#endif  // GUI_CEFBROWSER_AUTHCOMPLETIONCALLBACK_H_
