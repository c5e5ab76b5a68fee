#include "cef/chromium/browser/LoadErrors.h"

#include <algorithm>
#include <utility>

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
// Parts of pages may go without a word on what they were loading.
constexpr size_t kMostNavigations = 1024;

// Within which Chromium puts a document in the place of a page that failed.
constexpr int64_t kDocumentLimitMs = 1000;
// Chromium's own tries come 1, 6, 36 and 96 seconds after the failure.
constexpr std::chrono::seconds kLongestPause{45};
// An hour's, by when nobody waits any more.
constexpr int kMostFailures = 45;

// As Fetch names it.
std::string WithoutFragment(const std::string& address) {
  return address.substr(0, address.find('#'));
}

std::string HostOf(const std::string& address) {
  Url url;
  return ParseUrl(address, &url) ? url.host : "";
}

}  // namespace

LoadErrors::LoadErrors(DevToolsConnection& connection, BrowserTable& table)
    : connection_(connection), table_(table), errors_(std::make_shared<PageQueue>(kMostErrors)) {}

void LoadErrors::Listen(DevToolsConnection& connection, const std::string& session,
                        DevToolsConnection::ReplyHandler done) {
  connection.Send(session, "Network.enable",
                  JsonObject().Add("maxTotalBufferSize", 0).Add("maxResourceBufferSize", 0),
                  std::move(done));
}

void LoadErrors::Subscribe() {
  connection_.On(
      "Page.frameStartedNavigating",
      [this](const std::string& session, const JsonValue& params) { OnStarted(session, params); });
  connection_.On(
      "Network.requestWillBeSent",
      [this](const std::string& session, const JsonValue& params) { OnRequest(session, params); });
  connection_.On("Network.loadingFailed",
                 [this](const std::string&, const JsonValue& params) { OnFailed(params); });
}

LoadErrors::Navigation* LoadErrors::Expect(const std::string& session, const std::string& request,
                                           const std::string& frame_id, const std::string& url) {
  const CefRefPtr<Browser> browser = table_.BySession(session);
  if (!browser.get() || StartsWith(url, "data:") || StartsWith(url, "about:")) return nullptr;
  // Later navigations of the frame go through the session that speaks for it now.
  if (table_.SessionOfFrame(frame_id) != session) table_.SetFrame(session, frame_id);
  if (navigations_.size() >= kMostNavigations) navigations_.erase(navigations_.begin());
  Navigation& navigation = navigations_[request];
  navigation.target_id = browser->target_id();
  navigation.session = session;
  navigation.frame_id = frame_id;
  navigation.url = Cut(url, kLongestPageAddress);
  if (at_rest_.erase(session) != 0) Listen(connection_, session, {});
  return &navigation;
}

void LoadErrors::LetRest(const std::string& session) {
  if (!starts_are_told_ || !table_.BySession(session).get()) return;
  bool needed = false;
  for (auto it = navigations_.begin(); it != navigations_.end();) {
    // Of a frame that has gone, or has moved to another session.
    const bool stale = table_.SessionOfFrame(it->second.frame_id) != it->second.session;
    needed = needed || (!stale && it->second.session == session);
    it = stale ? navigations_.erase(it) : std::next(it);
  }
  if (!needed && at_rest_.insert(session).second) connection_.Send(session, "Network.disable");
}

// Comes before the request is held, and so before anything can happen to it.
void LoadErrors::OnStarted(const std::string& session, const JsonValue& params) {
  starts_are_told_ = true;
  const std::string type = TextAt(params, "navigationType");
  if (type == "sameDocument" || type == "historySameDocument") return;
  const std::string frame_id = TextAt(params, "frameId");
  const std::string url = TextAt(params, "url");
  const Navigation* navigation = Expect(session, TextAt(params, "loaderId"), frame_id, url);
  if (navigation && frame_id == navigation->target_id) BeginPage(frame_id, url);
}

// Tells where a redirect leads. The first one may come before there are network events.
void LoadErrors::OnRequest(const std::string& session, const JsonValue& params) {
  const JsonValue* request = MemberAt(params, "request");
  if (!request || TextAt(params, "type") != "Document") return;
  const std::string frame_id = TextAt(params, "frameId");
  const std::string url = TextAt(*request, "url") + TextAt(*request, "urlFragment");
  Navigation* navigation = Expect(session, TextAt(params, "requestId"), frame_id, url);
  if (!navigation) return;
  navigation->method = TextAt(*request, "method");
  if (frame_id == navigation->target_id) BeginPage(frame_id, url);
}

void LoadErrors::BeginPage(const std::string& target_id, const std::string& url) {
  pages_[target_id].last_try = Clock::now();
  const CefRefPtr<Browser> browser = table_.ByTarget(target_id);
  if (browser.get() && browser->shown().host.empty()) browser->Shows({HostOf(url), "", true});
}

// Once its document has begun, the failure is the renderer's to tell, which learns of our orders
// only when the document is there. Its reply says that it knows. The frame may be on its way to
// another document by then, so the address tells whose failure it is.
void LoadErrors::OnFailing(const JsonValue& paused, bool begun, std::function<void()> go_on) {
  const std::string frame_id = TextAt(paused, "frameId");
  const std::string loader = table_.LoaderOfFrame(frame_id);
  const JsonValue* request = MemberAt(paused, "request");
  const std::string url = request ? TextAt(*request, "url") : "";
  const auto under_way =
      std::find_if(navigations_.begin(), navigations_.end(), [&](const auto& entry) {
        return entry.second.frame_id == frame_id &&
               WithoutFragment(entry.second.url) == Cut(url, kLongestPageAddress);
      });
  Navigation* navigation = nullptr;
  if (under_way != navigations_.end()) {
    navigation = &under_way->second;
  } else if (request && begun && !loader.empty()) {
    navigation = Expect(table_.SessionOfFrame(frame_id), loader, frame_id,
                        url + TextAt(*request, "urlFragment"));
  }
  if (navigation && request) navigation->method = TextAt(*request, "method");
  if (!navigation || !begun) {
    go_on();
    return;
  }
  navigation->breaking = true;
  Listen(connection_, navigation->session,
         [go_on = std::move(go_on)](const JsonValue*, const std::string&) { go_on(); });
}

void LoadErrors::OnFailed(const JsonValue& params) {
  const std::string request = TextAt(params, "requestId");
  const auto found = navigations_.find(request);
  if (found == navigations_.end()) return;
  Navigation& navigation = found->second;
  if (navigation.frame_id == navigation.target_id)
    on_given_up_(navigation.target_id, navigation.url);
  const std::string error = TextAt(params, "errorText");
  // Chromium leaves the screen as it is when it has tried again in vain, and says so afterwards.
  const bool quiet = error == kAborted && !navigation.error.empty();
  navigation.error = error;
  const bool page = navigation.frame_id == navigation.target_id && error != kAborted;
  const bool document = page && pages_[navigation.target_id].loader == request;
  if (quiet || error == kEmptyHttpError) {
    const std::string session = navigation.session;
    navigations_.erase(found);
    LetRest(session);
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

void LoadErrors::OnDocument(const std::string& session, const JsonValue& frame) {
  const std::string target_id = TextAt(frame, "id");
  const std::string loader = TextAt(frame, "loaderId");
  const std::string failed = TextAt(frame, "unreachableUrl");
  const auto arrived = navigations_.find(loader);
  if (failed.empty() && arrived != navigations_.end() && !arrived->second.breaking) {
    navigations_.erase(arrived);
  }
  LetRest(session);
  const CefRefPtr<Browser> browser = table_.ByTarget(target_id);
  if (!browser.get()) return;
  const std::string url = failed.empty() ? TextAt(frame, "url") : failed;
  Page& page = pages_[target_id];
  page.loader = loader;
  if (failed.empty()) page.failures = 0;
  if (!HostOf(url).empty()) browser->Shows({HostOf(url), "", false});
  const auto found = navigations_.find(loader);
  if (found == navigations_.end() || found->second.error.empty()) return;
  Report(loader, Navigation(found->second), true);
}

// `document`: one stands in the place of the page, and the client's may take it.
void LoadErrors::Report(const std::string& request, const Navigation& navigation, bool document) {
  navigations_.erase(request);
  LetRest(navigation.session);
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
  for (auto it = at_rest_.begin(); it != at_rest_.end();) {
    it = table_.BySession(*it).get() ? std::next(it) : at_rest_.erase(it);
  }
}

}  // namespace engine
