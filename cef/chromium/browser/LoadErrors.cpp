#include "cef/chromium/browser/LoadErrors.h"

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/Text.h"
#include "cef/chromium/base/Url.h"
#include "cef/chromium/browser/Browser.h"

namespace engine {
namespace {

// An answer of this generation only: an HTTP error without a body. It is no load error.
constexpr char kEmptyHttpError[] = "net::ERR_HTTP_RESPONSE_CODE_FAILURE";
// Given up in favour of another address, or of none: the page stays.
constexpr char kAborted[] = "net::ERR_ABORTED";

constexpr size_t kMostErrors = 64;

// Within which Chromium puts a document in the place of a page that failed.
constexpr int64_t kDocumentLimitMs = 1000;
// Chromium's own tries come 1, 6, 36 and 96 seconds after the failure.
constexpr std::chrono::seconds kLongestPause{45};
// An hour's, by when nobody waits any more.
constexpr int kMostFailures = 45;

std::string HostOf(const std::string& address) {
  Url url;
  return ParseUrl(address, &url) ? url.host : "";
}

}  // namespace

LoadErrors::LoadErrors(DevToolsConnection& connection, BrowserTable& table)
    : connection_(connection), table_(table), errors_(std::make_shared<PageQueue>(kMostErrors)) {}

void LoadErrors::Subscribe() {
  connection_.On(
      "Network.requestWillBeSent",
      [this](const std::string& session, const JsonValue& params) { OnRequest(session, params); });
  connection_.On(
      "Network.loadingFailed",
      [this](const std::string& session, const JsonValue& params) { OnFailed(session, params); });
  connection_.On("Network.loadingFinished", [this](const std::string&, const JsonValue& params) {
    navigations_.erase(TextAt(params, "requestId"));
  });
}

void LoadErrors::OnRequest(const std::string& session, const JsonValue& params) {
  const JsonValue* request = MemberAt(params, "request");
  const CefRefPtr<Browser> browser = table_.BySession(session);
  if (!request || !browser.get() || TextAt(params, "type") != "Document") return;
  const std::string url = TextAt(*request, "url");
  const std::string frame_id = TextAt(params, "frameId");
  if (StartsWith(url, "data:")) return;
  // Later navigations of the frame go through the session that speaks for it now.
  if (table_.SessionOfFrame(frame_id) != session) table_.SetFrame(session, frame_id);
  navigations_[TextAt(params, "requestId")] = {
      browser->target_id(), frame_id,
      Cut(url + TextAt(*request, "urlFragment"), kLongestPageAddress), TextAt(*request, "method"),
      ""};
  if (frame_id != browser->target_id()) return;
  pages_[frame_id].last_try = Clock::now();
  if (browser->shown().host.empty()) browser->Shows({HostOf(url), "", true});
}

void LoadErrors::OnFailed(const std::string&, const JsonValue& params) {
  const std::string request = TextAt(params, "requestId");
  if (on_failed_) on_failed_(request);
  const auto found = navigations_.find(request);
  if (found == navigations_.end()) return;
  Navigation& navigation = found->second;
  const std::string error = TextAt(params, "errorText");
  // Chromium leaves the screen as it is when it has tried again in vain, and says so afterwards.
  const bool quiet = error == kAborted && !navigation.error.empty();
  navigation.error = error;
  const bool page = navigation.frame_id == navigation.target_id && error != kAborted;
  const bool document = page && pages_[navigation.target_id].loader == request;
  if (quiet || error == kEmptyHttpError) {
    navigations_.erase(found);
  } else if (page && !document) {
    IoThread::Get().PostDelayedTask(
        [this, request] {
          const auto late = navigations_.find(request);
          if (late != navigations_.end()) Report(request, Navigation(late->second), false);
        },
        kDocumentLimitMs);
  } else {
    Report(request, Navigation(navigation), document);
  }
}

void LoadErrors::OnDocument(const JsonValue& frame) {
  const std::string target_id = TextAt(frame, "id");
  const CefRefPtr<Browser> browser = table_.ByTarget(target_id);
  const std::string failed = TextAt(frame, "unreachableUrl");
  const std::string url = failed.empty() ? TextAt(frame, "url") : failed;
  if (!browser.get()) return;
  Page& page = pages_[target_id];
  page.loader = TextAt(frame, "loaderId");
  if (failed.empty()) page.failures = 0;
  if (!HostOf(url).empty()) browser->Shows({HostOf(url), "", false});
  const auto found = navigations_.find(page.loader);
  if (found == navigations_.end() || found->second.error.empty()) return;
  Report(page.loader, Navigation(found->second), true);
}

// `document`: one stands in the place of the page, and the client's may take it.
void LoadErrors::Report(const std::string& request, const Navigation& navigation, bool document) {
  navigations_.erase(request);
  const CefRefPtr<Browser> browser = table_.ByTarget(navigation.target_id);
  if (!browser.get()) return;
  if (navigation.frame_id == navigation.target_id && navigation.error != kAborted) {
    browser->Shows({HostOf(navigation.url), navigation.error, false});
    if (on_page_failed_) on_page_failed_(navigation.target_id, navigation.url);
  }
  if (document && navigation.method == "GET" &&
      ++pages_[navigation.target_id].failures <= kMostFailures) {
    TryAgainLater(navigation.target_id, request, kLongestPause);
  }
  errors_->Post([browser, navigation, document] {
    browser->NotifyLoadError(navigation.frame_id, navigation.error, navigation.url, document);
  });
}

void LoadErrors::TryAgainLater(const std::string& target_id, const std::string& loader,
                               std::chrono::milliseconds pause) {
  IoThread::Get().PostDelayedTask(
      [this, target_id, loader] {
        const auto page = pages_.find(target_id);
        const CefRefPtr<Browser> browser = table_.ByTarget(target_id);
        if (page == pages_.end() || page->second.loader != loader || !browser.get()) return;
        const auto left = TimeLeft(page->second.last_try + kLongestPause);
        if (left.count() > 0) {
          TryAgainLater(target_id, loader, left);
        } else {
          connection_.Send(browser->session(), "Page.reload");
        }
      },
      pause.count());
}

void LoadErrors::BrowserGone(const std::string& target_id) {
  pages_.erase(target_id);
  for (auto it = navigations_.begin(); it != navigations_.end();) {
    it = it->second.target_id == target_id ? navigations_.erase(it) : std::next(it);
  }
}

}  // namespace engine
