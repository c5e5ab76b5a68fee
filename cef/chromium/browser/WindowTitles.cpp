// From a window to its page: DevTools does not know X's windows, nor X the pages. Chromium reports
// a page before it makes a window for it, so when the window is there and Chromium has then
// answered one more question, the page is among those that are known. If only one of these has a
// window in Chromium's eyes and none yet in ours, they belong together. Pages that open several at
// the same moment leave a doubt, in which no host is shown: a page could have brought it about to
// borrow one.

#include "cef/chromium/browser/WindowTitles.h"

#include <algorithm>
#include <memory>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/Text.h"
#include "cef/chromium/browser/TitleText.h"
#include "cef/chromium/process/AppWindow.h"
#include "cef/chromium/process/Product.h"

namespace engine {
namespace {

// A page may change its title as often as it likes; Chromium's change of the window's name is
// corrected at once all the same.
constexpr int64_t kRenameMs = 30;

// Addresses that a page can give a document of its own: it belongs to whoever has made it.
std::string HostOf(const JsonValue& frame) {
  const std::string url = TextAt(frame, "url");
  const bool made = StartsWith(url, "about:") || StartsWith(url, "blob:") || url.empty();
  return HostToShow(made ? TextAt(frame, "securityOrigin") : url);
}

}  // namespace

WindowTitles::WindowTitles(DevToolsConnection& connection, WindowServer& server)
    : connection_(connection), server_(server) {
  server_.OnWindow([this](WindowServer::Window window) { OnWindow(window); },
                   [this](WindowServer::Window window) { OnWindowGone(window); });
}

void WindowTitles::Opened(const std::string& target, const std::string& opener,
                          const std::string& host) {
  Page& page = pages_[target];
  page.opener = opener;
  page.first_host = host;
  page.first = opener.empty();
  Match();
}

void WindowTitles::Gone(const std::string& target) { pages_.erase(target); }

void WindowTitles::OnWindow(WindowServer::Window window) {
  strays_.push_back(window);
  Match();
}

void WindowTitles::OnWindowGone(WindowServer::Window window) {
  strays_.erase(std::remove(strays_.begin(), strays_.end(), window), strays_.end());
  for (auto& [target, page] : pages_) {
    if (page.window == window) page.window = XCB_NONE;
  }
}

void WindowTitles::Match() {
  if (strays_.empty()) return;
  struct Answers {
    size_t missing = 0;
    std::vector<std::string> shown;
  };
  const auto answers = std::make_shared<Answers>();
  std::vector<std::string> asked;
  for (const auto& [target, page] : pages_) {
    if (page.window == XCB_NONE) asked.push_back(target);
  }
  answers->missing = asked.size();
  for (const std::string& target : asked) {
    connection_.Send("", "Browser.getWindowForTarget", JsonObject().Add("targetId", target),
                     [this, answers, target](const JsonValue* result, const std::string&) {
                       IoThread::Get().PostTask([this, answers, target, shown = result != nullptr] {
                         if (shown) answers->shown.push_back(target);
                         if (--answers->missing == 0) Belongs(answers->shown);
                       });
                     });
  }
}

void WindowTitles::Belongs(const std::vector<std::string>& targets) {
  std::vector<std::string> open;
  for (const std::string& target : targets) {
    const auto page = pages_.find(target);
    if (page != pages_.end() && page->second.window == XCB_NONE) open.push_back(target);
  }
  if (open.size() != 1 || strays_.size() != 1) return;
  Page& page = pages_[open.front()];
  page.window = strays_.front();
  strays_.clear();
  const auto opener = pages_.find(page.opener);
  if (opener != pages_.end() && opener->second.window != XCB_NONE) {
    server_.PutBeside(page.window, opener->second.window);
  } else {
    server_.Centre(page.window);
  }
  Rename(page);
}

void WindowTitles::Shows(const std::string& target, const JsonValue& frame, Arrival arrival) {
  const auto found = pages_.find(target);
  if (found == pages_.end()) return;
  Page& page = found->second;
  // The client's page about the failure.
  if (arrival == Arrival::kWritten && page.failed) return;
  const std::string failed_url = TextAt(frame, "unreachableUrl");
  if (!failed_url.empty()) page.failed_host = HostToShow(failed_url);
  // Pages cannot load a data URL as a whole: it is the client's, or the first one.
  const bool ours = StartsWith(TextAt(frame, "url"), "data:");
  page.failed = !failed_url.empty() || (ours && !page.failed_host.empty());
  page.first = ours && !page.failed && page.opener.empty();
  page.host = page.failed ? "" : HostOf(frame);
  if (!page.failed) page.failed_host.clear();
  // One that was found may have told its title already.
  if (arrival != Arrival::kFound) page.title.clear();
  Rename(page);
}

void WindowTitles::Failed(const std::string& target, const std::string& url) {
  const auto found = pages_.find(target);
  if (found == pages_.end()) return;
  Page& page = found->second;
  page.failed_host = HostToShow(url);
  page.failed = true;
  page.host.clear();
  page.title.clear();
  Rename(page);
}

void WindowTitles::Titled(const std::string& target, const std::string& title) {
  const auto found = pages_.find(target);
  if (found == pages_.end()) return;
  found->second.title = title;
  RenameSoon(target);
}

void WindowTitles::RenameSoon(const std::string& target) {
  Page& page = pages_[target];
  if (page.renaming) return;
  page.renaming = true;
  IoThread::Get().PostDelayedTask(
      [this, target] {
        const auto found = pages_.find(target);
        if (found == pages_.end()) return;
        found->second.renaming = false;
        Rename(found->second);
      },
      kRenameMs);
}

void WindowTitles::Rename(const Page& page) {
  if (page.window == XCB_NONE) return;
  if (page.failed) {
    server_.SetTitle(page.window, FailedTitle(page.failed_host));
  } else if (page.first) {
    server_.SetTitle(page.window, FirstTitle(page.first_host));
  } else if (page.host.empty()) {
    server_.SetTitle(page.window, kUnknownTitle);
  } else {
    server_.SetTitle(page.window, TitleText(page.host, page.title));
  }
}

}  // namespace engine
