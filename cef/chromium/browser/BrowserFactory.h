// Orders for new browsers, carried out one after the other.

#ifndef CEF_CHROMIUM_BROWSER_BROWSERFACTORY_H_
#define CEF_CHROMIUM_BROWSER_BROWSERFACTORY_H_

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "include/cef_client.h"
#include "include/cef_request_context.h"

namespace engine {

// An order: who gets the browser and where it goes first.
struct BrowserOrder {
  CefRefPtr<CefClient> client;
  CefRefPtr<CefRequestContext> context;
  std::string url;
};

// Lives as long as the process. From the order to the end of OnAfterCreated, signals are held back:
// a signal closes the browsers there are, and would miss the one that is about to be. A window that
// has not come a second after the signal is given up.
class BrowserFactory {
 public:
  // A way to have Chromium open a window for an address that is loaded later; false with a reason
  // when it failed at once. It must not keep a signal waiting. UI thread.
  using Opener = std::function<bool(const std::string& url, std::string* err)>;

  // Tries `openers` in turn, waiting three seconds for a window each time; a signal ends the
  // search. When none comes, says so on standard error and calls `on_failure` (UI thread).
  void SetUp(std::vector<Opener> openers, std::function<void()> on_failure);

  // Any thread.
  void Order(BrowserOrder order);

  // A window has come: the order that it is for, if one waits. The taker must call Finish(). Any
  // thread.
  std::optional<BrowserOrder> Take();

  // The browser of the taken order has been announced. UI thread.
  void Finish();

  // Why the window that the last opener has promised will not come. UI thread.
  void Note(const std::string& reason) { last_error_ = reason; }

  // Chromium is gone: everything ordered fails. UI thread.
  void FailAll();

 private:
  void OpenNext();
  void Try(size_t opener);
  void AwaitWindow(int64_t limit_ms, size_t next_opener);
  void Fail(const std::string& reason);

  std::vector<Opener> openers_;
  std::function<void()> on_failure_;

  std::mutex mutex_;
  std::optional<BrowserOrder> waiting_;  // for its window; guarded by mutex_

  // UI thread only.
  std::deque<BrowserOrder> queue_;
  bool busy_ = false;     // an order is being carried out
  uint64_t current_ = 0;  // number of that order
  std::string url_;       // its address
  std::string last_error_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_BROWSERFACTORY_H_
