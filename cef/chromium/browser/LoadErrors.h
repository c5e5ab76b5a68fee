// Navigations that failed, for CefLoadHandler.

#ifndef CEF_CHROMIUM_BROWSER_LOADERRORS_H_
#define CEF_CHROMIUM_BROWSER_LOADERRORS_H_

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/base/PageQueue.h"
#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Reports a failed navigation of any frame: with the error's name as Chromium gives it
// ("net::ERR_..."), and the address that failed, after redirects. Data addresses are left out,
// since clients use them to show their own error page, and so are the frames of a page that fails
// faster than the client takes it.
//
// A whole page that could not be had keeps its address, and its history, whatever the client shows
// in its place. So it can be reloaded, and unless something was posted it is tried again by itself:
// by Chromium, as soon as the network comes back and in growing pauses, of which the first is a
// second; where these grow longer than a user waits, by this class. A try that fails again changes
// nothing on the screen and is not reported.
class LoadErrors {
 public:
  // Both must live as long as the process.
  LoadErrors(DevToolsConnection& connection, BrowserTable& table);

  // Before the connection is opened. `handler` is told the network's id of every request of a page
  // that has failed or was given up, on the IO thread.
  void OnAnyFailed(std::function<void(const std::string& network_id)> handler) {
    on_failed_ = std::move(handler);
  }
  // Before the connection is opened. `handler` is told the target and the address of a page whose
  // top frame could not load, on the IO thread.
  void OnPageFailed(
      std::function<void(const std::string& target, const std::string& url)> handler) {
    on_page_failed_ = std::move(handler);
  }
  void Subscribe();

  // A frame shows another document: the "frame" of Page.frameNavigated. IO thread.
  void OnDocument(const JsonValue& frame);

  // Forgets the navigations of a browser. IO thread.
  void BrowserGone(const std::string& target_id);

 private:
  struct Navigation {
    std::string target_id;
    std::string frame_id;
    std::string url;
    std::string method;
    std::string error;  // of a page that failed, until a document stands in its place
  };
  // What a browser's main frame shows.
  struct Page {
    std::string loader;  // the request that has brought it
    int failures = 0;    // since a page came
    Clock::time_point last_try;
  };

  void OnRequest(const std::string& session, const JsonValue& params);
  void OnFailed(const std::string& session, const JsonValue& params);
  void Report(const std::string& request, const Navigation& navigation, bool document);
  void TryAgainLater(const std::string& target_id, const std::string& loader,
                     std::chrono::milliseconds pause);

  DevToolsConnection& connection_;
  BrowserTable& table_;
  const std::shared_ptr<PageQueue> errors_;
  std::function<void(const std::string&)> on_failed_;
  std::function<void(const std::string&, const std::string&)> on_page_failed_;
  // IO thread only.
  std::map<std::string, Navigation> navigations_;  // by request id
  std::map<std::string, Page> pages_;              // by target id
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_LOADERRORS_H_
