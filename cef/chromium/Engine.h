// The framework as a whole: what CefInitialize starts, and who belongs to whom.

#ifndef CEF_CHROMIUM_ENGINE_H_
#define CEF_CHROMIUM_ENGINE_H_

#include <atomic>
#include <string>

#include "cef/chromium/browser/BrowserFactory.h"
#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/browser/LoadErrors.h"
#include "cef/chromium/browser/Targets.h"
#include "cef/chromium/cookies/CookieStore.h"
#include "cef/chromium/devtools/DevToolsConnection.h"
#include "cef/chromium/network/Certificates.h"
#include "cef/chromium/network/NetworkHooks.h"
#include "cef/chromium/process/CommandLine.h"
#include "cef/chromium/process/Launch.h"
#include "include/cef_app.h"
#include "include/cef_request_context.h"

namespace engine {

class Engine {
 public:
  // Never destroyed: callbacks of late threads still find it.
  static Engine& Get();

  // CefInitialize, on the main thread. A call while the framework runs does nothing and succeeds.
  // False after at most 15 seconds; standard error then says why.
  bool Initialize(const CefSettings& settings, CefRefPtr<CefApp> app);

  // CefRunMessageLoop. When the framework does not run, it hands over what signals wait and
  // returns.
  void RunMessageLoop();

  // CefBrowserHost::CreateBrowser. False when the framework does not run. Any thread.
  bool CreateBrowser(BrowserOrder order);

  // CefRequestContext::CreateContext: a context beside `other`; without a handler, `other` itself.
  // Any thread.
  CefRefPtr<CefRequestContext> ShareContext(CefRefPtr<CefRequestContext> other,
                                            CefRefPtr<CefRequestContextHandler> handler);

  // Any thread. Null before Initialize().
  CefRefPtr<CefCommandLine> command_line() const { return command_line_.get(); }
  CefRefPtr<CefRequestContext> global_context() const { return global_context_; }

 private:
  friend class Conversation;  // plays Chromium, once an input

  Engine();

  void Wire();
  // Ends Chromium, when the process exits.
  void Shutdown();
  void OnConnectionClosed();
  void OnDisplayLost();
  void SayWhatEndedIt();
  void SayWhatWasClosed(const Browser& last);
  void SayWhatIsShown();
  bool OpenByTarget(const std::string& url);

  DevToolsConnection connection_;
  Launch launch_{connection_};
  BrowserTable table_;
  BrowserFactory factory_;
  CookieStore cookies_{connection_};
  NetworkHooks hooks_{connection_, table_};
  Certificates certificates_{connection_, hooks_};
  LoadErrors load_errors_{connection_, table_};
  WindowServer server_;
  WindowTitles windows_{connection_, server_};
  Targets targets_{connection_, table_, factory_, windows_};

  std::atomic<bool> running_{false};
  bool display_lost_ = false;    // UI thread only
  bool chromium_ended_ = false;  // IO thread only
  // Set once, on the main thread, before anybody else asks.
  CefRefPtr<CommandLine> command_line_;
  CefRefPtr<CefRequestContext> global_context_;
  CefRefPtr<CefApp> app_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_ENGINE_H_
