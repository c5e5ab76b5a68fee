// The events of the browser process.

#ifndef CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
#define CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_

#include "include/cef_base.h"
#include "include/cef_command_line.h"
#include "include/cef_print_handler.h"
#include "include/cef_values.h"

// Implemented by the client.
class CefBrowserProcessHandler : public virtual CefBaseRefCounted {
 public:
  // UI thread, from inside CefInitialize. Browsers can be ordered from here on.
  virtual void OnContextInitialized() {}
  // UI or IO thread.
  virtual void OnBeforeChildProcessLaunch(CefRefPtr<CefCommandLine> /*command_line*/) {}
  // IO thread.
  virtual void OnRenderProcessThreadCreated(CefRefPtr<CefListValue> /*extra_info*/) {}
  virtual CefRefPtr<CefPrintHandler> GetPrintHandler() { return nullptr; }
  // With an external message pump only.
  virtual void OnScheduleMessagePumpWork(int64 /*delay_ms*/) {}
};

#endif  // CEF_INCLUDE_CEF_BROWSER_PROCESS_HANDLER_H_
