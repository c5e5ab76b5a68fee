// Navigations that failed, for CefLoadHandler.

#ifndef CEF_CHROMIUM_BROWSER_LOADERRORS_H_
#define CEF_CHROMIUM_BROWSER_LOADERRORS_H_

#include <functional>
#include <map>
#include <memory>
#include <set>
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
// Only Chromium's network events tell the name, and they come in fives for every picture of a page.
// So a session has them while one of its frames waits for a document, and again when a document
// breaks off. A new session has them from the start.
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

  // Before the connection is opened. `handler` is told the target and the address of a page whose
  // top frame could not load or was given up, on the IO thread.
  void OnGivenUp(std::function<void(const std::string& target, const std::string& url)> handler) {
    on_given_up_ = std::move(handler);
  }
  // Before the connection is opened. `handler` is told the target and the address of a page whose
  // top frame could not load, on the IO thread.
  void OnPageFailed(
      std::function<void(const std::string& target, const std::string& url)> handler) {
    on_page_failed_ = std::move(handler);
  }
  void Subscribe();

  // Orders the network events of a session. `done` is told once it has them.
  static void Listen(DevToolsConnection& connection, const std::string& session,
                     DevToolsConnection::ReplyHandler done);

  // A frame's document has failed, and its request is held: what Fetch.requestPaused has of it.
  // `begun`: after its answer had come. Calls `go_on` when the failure will be heard of, at once or
  // later. IO thread.
  void OnFailing(const JsonValue& paused, bool begun, std::function<void()> go_on);
  // A frame shows another document: the "frame" of Page.frameNavigated. IO thread.
  void OnDocument(const std::string& session, const JsonValue& frame);

  // Forgets the navigations of a browser. IO thread.
  void BrowserGone(const std::string& target_id);

 private:
  struct Navigation {
    std::string target_id;
    std::string session;
    std::string frame_id;
    std::string url;
    std::string method;
    bool breaking = false;  // its request has failed, its document may come
    std::string error;      // of a page that failed, until a document stands in its place
  };
  // What a browser's main frame shows.
  struct Page {
    std::string loader;  // the request that has brought it
    int failures = 0;    // since a page came
    Clock::time_point last_try;
  };

  void OnStarted(const std::string& session, const JsonValue& params);
  void OnRequest(const std::string& session, const JsonValue& params);
  void OnFailed(const JsonValue& params);
  void BeginPage(const std::string& target_id, const std::string& url);
  Navigation* Expect(const std::string& session, const std::string& request,
                     const std::string& frame_id, const std::string& url);
  void LetRest(const std::string& session);
  void Report(const std::string& request, const Navigation& navigation, bool document);
  void TryAgainLater(const std::string& target_id, const std::string& loader,
                     std::chrono::milliseconds pause);

  DevToolsConnection& connection_;
  BrowserTable& table_;
  const std::shared_ptr<PageQueue> errors_;
  std::function<void(const std::string&, const std::string&)> on_given_up_;
  std::function<void(const std::string&, const std::string&)> on_page_failed_;
  // IO thread only.
  std::map<std::string, Navigation> navigations_;  // by request id
  std::set<std::string> at_rest_;                  // sessions without network events
  bool starts_are_told_ = false;                   // else none may rest
  std::map<std::string, Page> pages_;              // by target id
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_LOADERRORS_H_
