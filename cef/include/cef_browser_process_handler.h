// The events of the browser process.

#ifndef CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
#define CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_

#include "include/cef_base.h"

// Implemented by the client.
class CefBrowserProcessHandler : public virtual CefBaseRefCounted {
 public:
  // UI thread, from inside CefInitialize. Browsers can be ordered from here on.
  virtual void OnContextInitialized() {}
};

#endif  // CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
