// Every request of every page passes the client's hooks here.

#ifndef CEF_CHROMIUM_NETWORK_NETWORKHOOKS_H_
#define CEF_CHROMIUM_NETWORK_NETWORKHOOKS_H_

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "cef/chromium/browser/Browser.h"
#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/devtools/DevToolsConnection.h"
#include "include/cef_resource_request_handler.h"

namespace engine {

// Chromium pauses each request before it is sent and again when its answer's headers are there; the
// client is called in place, on the IO thread, and then the request goes on.
//
// Requests for icons and manifests, which are Chromium's own business, call no hook, nor do data
// and about pages and what comes from a page's memory. A worker's requests count as the newest
// browser's. The request is sent as it is: flags that the client sets have no effect, a cookie
// filter and a resource handler are asked for but not used.
class NetworkHooks {
 public:
  // Both must live as long as the process.
  NetworkHooks(DevToolsConnection& connection, BrowserTable& table);

  // Before the connection is opened.
  void Subscribe();
  // Orders Chromium to pause requests, to refuse downloads and to answer no sign-in dialogs; the
  // replies are not waited for.
  void Enable();

  // Before the connection is opened. `handler` gets what Fetch.requestPaused has of a frame's
  // document that has failed, and whether its answer had begun; the page is not told before `go_on`
  // is called. Both on the IO thread.
  using FailureHandler =
      std::function<void(const JsonValue& paused, bool begun, std::function<void()> go_on)>;
  void OnDocumentFailing(FailureHandler handler) { document_failing_ = std::move(handler); }

  // Forgets a main frame's request, which has failed or was given up. IO thread.
  void NavigationGone(const std::string& target_id, const std::string& url);
  // Forgets the requests of a browser. IO thread.
  void BrowserGone(const std::string& target_id);

  // The browser whose main frame is being loaded from that address and waits for the answer; null
  // when there is none. IO thread.
  CefRefPtr<Browser> LoadingMainFrame(const std::string& url) const;

 private:
  // A request on its way, from its first pause to its answer.
  struct Pending {
    CefRefPtr<Browser> browser;
    CefRefPtr<CefFrame> frame;
    CefRefPtr<CefRequest> request;
    CefRefPtr<CefResponse> redirect;               // the answer, if it sends the request elsewhere
    CefRefPtr<CefResourceRequestHandler> handler;  // null: the client does not care
    std::string url;
    bool main_frame = false;
  };
  // The number of the request, which grows, and the interception's id.
  using Key = std::pair<uint64, std::string>;
  using PendingMap = std::map<Key, Pending>;

  void OnPaused(const JsonValue& params);
  void OnFailure(const std::string& id, const JsonValue& params);
  void OnRequest(const std::string& id, const JsonValue& params);
  void OnResponse(const std::string& id, const JsonValue& params);
  void NotifyRedirect(const std::string& former_id, const std::string& new_url);
  bool Describe(const JsonValue& params, Pending* pending) const;

  static Key KeyOf(const std::string& id);
  void Keep(const std::string& id, const Pending& pending);
  template <typename Condition>
  void ForgetIf(Condition condition);
  void Continue(const std::string& id);
  void Abort(const std::string& id);

  DevToolsConnection& connection_;
  BrowserTable& table_;
  FailureHandler document_failing_;
  PendingMap pending_;  // IO thread only
};

}  // namespace engine

#endif  // CEF_CHROMIUM_NETWORK_NETWORKHOOKS_H_
