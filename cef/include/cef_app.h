// Start, run and end of the framework.

#ifndef CEF_INCLUDE_CEF_APP_H_
#define CEF_INCLUDE_CEF_APP_H_

#include "include/cef_base.h"
#include "include/cef_browser.h"
#include "include/cef_browser_process_handler.h"
#include "include/cef_command_line.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_response.h"

// The application's side of the process. Implemented by the client.
class CefApp : public virtual CefBaseRefCounted {
 public:
  // On the thread of CefInitialize, inside it, before the command line is used. `process_type` is
  // empty for the browser process.
  virtual void OnBeforeCommandLineProcessing(const CefString& /*process_type*/,
                                             CefRefPtr<CefCommandLine> /*command_line*/) {}
  // Called on several threads.
  virtual CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() { return nullptr; }
};

// Starts the framework; the calling thread becomes the UI thread. `application` may be null,
// `windows_sandbox_info` is null. CefBrowserProcessHandler::OnContextInitialized has run when it
// returns. The handlers of SIGHUP, SIGINT and SIGTERM are reset to the default by it.
//
// False when the framework is not loaded, is of another version than these headers (said on
// standard error), or cannot start. True again when called a second time.
bool CefInitialize(const CefMainArgs& args, const CefSettings& settings,
                   CefRefPtr<CefApp> application, void* windows_sandbox_info);

// Runs the events of the UI thread, the window system's among them, until CefQuitMessageLoop.
// Returns at once when CEF is not initialised.
void CefRunMessageLoop();

// Lets the running loop end once it is idle. UI thread. It is not remembered for a later loop.
void CefQuitMessageLoop();

#endif  // CEF_INCLUDE_CEF_APP_H_
