// Pages, frames and workers come and go as DevTools targets; pages become browsers.

#ifndef CEF_CHROMIUM_BROWSER_TARGETS_H_
#define CEF_CHROMIUM_BROWSER_TARGETS_H_

#include <functional>
#include <string>

#include "cef/chromium/browser/Browser.h"
#include "cef/chromium/browser/BrowserFactory.h"
#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/browser/WindowTitles.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Every target is attached to while it still waits, is set up, and is then let run. A page becomes
// a browser if it was ordered from the factory or if a page has opened it; what else Chromium opens
// is closed at once, but for the developer tools of a build for development.
class Targets {
 public:
  Targets(DevToolsConnection& connection, BrowserTable& table, BrowserFactory& factory,
          WindowTitles& windows);

  // Chromium sends this with every request when it is not empty. Before Enable().
  void SetUserAgent(const std::string& user_agent) { user_agent_ = user_agent; }
  // Called on the IO thread when a browser's window is gone, and the browser out of the table.
  void OnGone(std::function<void(const CefRefPtr<Browser>& browser)> handler);
  // Runs its argument once all cookie operations so far have been carried out. Any thread.
  void SetBarrier(std::function<void(std::function<void()>)> barrier);

  // Before the connection is opened.
  void Subscribe();
  // Orders Chromium to report targets; the replies are not waited for.
  void Enable();

  // Takes leave of every browser: Chromium has ended. IO thread.
  void AllGone();

 private:
  void OnAttached(const std::string& parent_session, const JsonValue& params);
  void AttachPage(const std::string& session, const JsonValue& info);
  CefRefPtr<Browser> AddBrowser(const std::string& target, const std::string& session,
                                CefRefPtr<CefClient> client, CefRefPtr<CefRequestContext> context,
                                bool popup);
  void AttachOrdered(const std::string& target, const std::string& session,
                     const BrowserOrder& order);
  void AttachPopup(const std::string& target, const std::string& session, Browser& opener);
  void LoadFirst(const CefRefPtr<Browser>& browser, const std::string& url);
  void AttachPart(const std::string& parent_session, const std::string& session,
                  const JsonValue& info);
  void SetUpPage(const std::string& session, bool main);
  void LetRun(const std::string& session);
  void Close(const std::string& target, const std::string& session);
  void Gone(const std::string& target_id);

  DevToolsConnection& connection_;
  BrowserTable& table_;
  BrowserFactory& factory_;
  WindowTitles& windows_;
  std::string user_agent_;
  std::function<void(const CefRefPtr<Browser>&)> on_gone_;
  std::function<void(std::function<void()>)> barrier_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_TARGETS_H_
