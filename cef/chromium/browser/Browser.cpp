#include "cef/chromium/browser/Browser.h"

#include <utility>

#include "cef/chromium/base/DataUrl.h"
#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/base/NetErrors.h"
#include "cef/chromium/base/Text.h"
#include "cef/chromium/base/Url.h"
#include "cef/chromium/browser/BrowserHost.h"
#include "cef/chromium/browser/Frame.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {
namespace {

// A page has half a second for its unload handlers.
constexpr int kCloseRetryMs = 700;
constexpr int kCloseAttempts = 4;
constexpr size_t kMostAwaiting = 64;
constexpr char kInvalidUrl[] = "net::ERR_INVALID_URL";

int NextIdentifier() {
  static std::atomic<int> last{0};
  return ++last;
}

CefRefPtr<CefLifeSpanHandler> LifeSpanHandler(const CefRefPtr<CefClient>& client) {
  return client.get() ? client->GetLifeSpanHandler() : nullptr;
}

}  // namespace

Browser::Browser(DevToolsConnection& connection, SessionOfFrame session_of_frame,
                 const std::string& target_id, const std::string& session,
                 CefRefPtr<CefClient> client, CefRefPtr<CefRequestContext> context, bool popup)
    : connection_(connection),
      session_of_frame_(std::move(session_of_frame)),
      target_id_(target_id),
      session_(session),
      context_(context),
      popup_(popup),
      identifier_(NextIdentifier()),
      client_(client) {}

CefRefPtr<CefClient> Browser::client() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return client_;
}

void Browser::NotifyCreated() {
  const CefRefPtr<CefLifeSpanHandler> handler = LifeSpanHandler(client());
  if (handler.get()) handler->OnAfterCreated(this);
}

void Browser::NotifyGone() {
  const CefRefPtr<CefClient> client = this->client();
  const CefRefPtr<CefLifeSpanHandler> handler = LifeSpanHandler(client);
  if (handler.get()) {
    // After a close by the user this comes too late to prevent anything, but a client counts on it.
    if (!did_do_close_) handler->DoClose(this);
    handler->OnBeforeClose(this);
  }
  std::lock_guard<std::mutex> lock(mutex_);
  client_ = nullptr;
}

void Browser::SetUpIsDone() {
  set_up_ = true;
  for (const auto& done : std::exchange(awaiting_set_up_, {})) done();
}

void Browser::WhenSetUp(std::function<void()> done) {
  if (set_up_) {
    done();
    return;
  }
  if (awaiting_set_up_.size() >= kMostAwaiting) awaiting_set_up_.erase(awaiting_set_up_.begin());
  awaiting_set_up_.push_back(std::move(done));
}

void Browser::Close(bool force) {
  // At once, so that a network callback which closes its browser can leave its request held.
  if (force) forced_ = true;
  if (MessageLoop::Get().OnUiThread()) {
    CloseOnUi(force);
  } else {
    CefRefPtr<Browser> self = this;
    const auto close = [self, force] { self->CloseOnUi(force); };
    // The end of a step does not wait for the answer to a question in another window.
    force ? MessageLoop::Get().PostUrgentTask(close) : MessageLoop::Get().PostTask(close);
  }
}

void Browser::CloseOnUi(bool force) {
  if (!force) {
    if (asked_page_ || did_do_close_) return;
    asked_page_ = true;
    CefRefPtr<Browser> self = this;
    // The page may refuse, or not answer in time; then it can be asked again.
    connection_.Send(session_, "Page.close", {}, [self](const JsonValue*, const std::string&) {
      MessageLoop::Get().PostTask([self] { self->asked_page_ = false; });
    });
    return;
  }
  if (did_do_close_) return;
  const CefRefPtr<CefLifeSpanHandler> handler = LifeSpanHandler(client());
  did_do_close_ = true;
  if (handler.get() && handler->DoClose(this)) {
    did_do_close_ = false;
    forced_ = false;
    return;
  }
  CloseTarget(kCloseAttempts);
}

// Chromium forgets to close a window whose page is being replaced at that moment, so it is asked
// again. One that still stays ends with all of Chromium, and a Chromium that stays is given up.
void Browser::CloseTarget(int attempts) {
  if (!client().get()) return;  // it has gone
  if (attempts < 0) {
    connection_.Drop();
    return;
  }
  if (attempts == 0) {
    connection_.Send("", "Browser.close");
  } else {
    connection_.Send("", "Target.closeTarget", JsonObject().Add("targetId", target_id_));
  }
  CefRefPtr<Browser> self = this;
  MessageLoop::Get().PostDelayedTask([self, attempts] { self->CloseTarget(attempts - 1); },
                                     kCloseRetryMs);
}

void Browser::Navigate(const std::string& frame_id, const std::string& url) {
  if (url.empty()) return;
  if (MessageLoop::Get().OnUiThread() && frame_id == to_fill_) {
    // The document that stands there keeps the address that failed, for reloading.
    if (const std::optional<std::string> html = HtmlOfDataUrl(url)) {
      connection_.Send(session_, "Page.setDocumentContent",
                       JsonObject().Add("frameId", frame_id).Add("html", *html));
      return;
    }
  }
  const std::string target = HasScheme(url) ? url : "http://" + url;
  JsonObject params;
  params.Add("url", target);
  // A frame that has gone meanwhile leaves the address to the whole page.
  const std::string part = frame_id == target_id_ ? "" : session_of_frame_(frame_id);
  if (!part.empty()) params.Add("frameId", frame_id);
  CefRefPtr<Browser> self = this;
  const auto navigate = [self, frame_id, target, params, session = part.empty() ? session_ : part] {
    self->connection_.Send(
        session, "Page.navigate", params,
        [self, frame_id, target](const JsonValue* result, const std::string& error) {
          // Everything else that can go wrong is an event of the network.
          if (result || error.find("invalid URL") == std::string::npos) return;
          MessageLoop::Get().PostTask(
              [self, frame_id, target] { self->NotifyLoadError(frame_id, kInvalidUrl, target); });
        },
        DevToolsConnection::kNoLimit);
  };
  Url parsed;
  const bool by_http = ParseUrl(target, &parsed) && StartsWith(parsed.scheme, "http");
  IoThread::Get().PostTask([self, navigate, by_http] {
    // The answer of HTTP is held instead, see NetworkHooks: its request need not wait.
    by_http ? navigate() : self->WhenSetUp(navigate);
  });
}

void Browser::NotifyLoadError(const std::string& frame_id, const std::string& error_text,
                              const std::string& url, bool document) {
  const CefRefPtr<CefClient> client = this->client();
  // What a closing window breaks off is no error.
  if (!client.get() || url.empty() || forced_) return;
  const CefRefPtr<CefLoadHandler> handler = client->GetLoadHandler();
  if (!handler.get()) return;
  if (document) to_fill_ = frame_id;
  handler->OnLoadError(this, FrameById(frame_id),
                       static_cast<cef_errorcode_t>(NetErrorCode(error_text)), error_text, url);
  to_fill_.clear();
}

void Browser::Shows(const Shown& shown) {
  std::lock_guard<std::mutex> lock(mutex_);
  shown_ = shown;
}

Shown Browser::shown() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return shown_;
}

CefRefPtr<CefFrame> Browser::FrameById(const std::string& frame_id) {
  return new Frame(this, frame_id.empty() ? target_id_ : frame_id);
}

CefRefPtr<CefBrowserHost> Browser::GetHost() { return new BrowserHost(this); }

bool Browser::IsSame(CefRefPtr<CefBrowser> that) {
  return that.get() && that->GetIdentifier() == identifier_;
}

CefRefPtr<CefFrame> Browser::GetMainFrame() { return FrameById(target_id_); }

}  // namespace engine
