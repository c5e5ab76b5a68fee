// Navigations that failed, for CefLoadHandler.

#ifndef CEF_CHROMIUM_BROWSER_LOADERRORS_H_
#define CEF_CHROMIUM_BROWSER_LOADERRORS_H_

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "cef/chromium/base/PageQueue.h"
#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Reports a failed navigation of any frame: with the error's name as Chromium gives it
// ("net::ERR_..."), and the address that failed, after redirects. Data addresses are left out,
// since clients use them to show their own error page, and so are the frames of a page that fails
// faster than the client takes it.
class LoadErrors {
 public:
  // Both must live as long as the process.
  LoadErrors(DevToolsConnection& connection, BrowserTable& table);

  // Before the connection is opened. `handler` is told the network's id of every request of a page
  // that has failed or was given up, on the IO thread.
  void OnAnyFailed(std::function<void(const std::string& network_id)> handler) {
    on_failed_ = std::move(handler);
  }
  void Subscribe();

  // Forgets the navigations of a browser. IO thread.
  void BrowserGone(const std::string& target_id);

 private:
  struct Navigation {
    std::string target_id;
    std::string frame_id;
    std::string url;
  };

  void OnRequest(const std::string& session, const JsonValue& params);
  void OnFailed(const std::string& session, const JsonValue& params);

  DevToolsConnection& connection_;
  BrowserTable& table_;
  const std::shared_ptr<PageQueue> errors_;
  std::function<void(const std::string&)> on_failed_;
  std::map<std::string, Navigation> navigations_;  // by request id; IO thread only
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_LOADERRORS_H_
