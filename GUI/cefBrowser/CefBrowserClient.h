// The driver of one run: makes the session that the launch request asks for, runs CEF with it and
// hands its result back. Also the signal handling, which ends a run from outside.

#ifndef GUI_CEFBROWSER_CEFBROWSERCLIENT_H_
#define GUI_CEFBROWSER_CEFBROWSERCLIENT_H_

#include <memory>

#include "GUI/cefBrowser/CefEmbBrowserLogin.h"
#include "GUI/newUI/CEFJsonUtils.h"
#include "include/wrapper/cef_library_loader.h"

// The port on loopback that serves the browser's developer tools during a run.
inline constexpr int kDevToolsPort = 8088;

// Installs handleSignal for SIGINT, SIGTERM and SIGHUP, in this order. The first failure is logged
// and ends the sequence. True when all three are installed.
bool SetupSignalHandler();

// Ends the run by closing the session's browser; ignores every number but SIGHUP, SIGINT, SIGQUIT
// and SIGTERM. It logs and allocates, which a handler that interrupts arbitrary code must not do:
// the program therefore keeps the signals back (platform/TerminationSignals.h), and this function
// is called from the message loop, where no lock is held.
void handleSignal(int signum);

// All state is static: one process runs one step. Main thread only.
class CefBrowserClient {
 public:
  // Makes the client and the session for `type`. For an unknown type there is no session, and
  // Navigate will refuse.
  static std::shared_ptr<CefBrowserClient> getInstance(WebBrowserType type);

  // Runs the whole step: loads the framework, starts CEF with the session, runs the message loop
  // until the last browser has closed and writes the return data to shared memory. Failures are
  // logged.
  void Navigate(const EmbBrowserInfo& info);

  static std::shared_ptr<CefEmbBrowserLogin> m_pBrowserCtrl;
  static std::shared_ptr<CefBrowserClient> s_pBrowserClient;
  static bool m_initalized;
  static bool m_bsession_timed_out;  // written only
  static CefScopedLibraryLoader library_loader;
};

#endif  // GUI_CEFBROWSER_CEFBROWSERCLIENT_H_
