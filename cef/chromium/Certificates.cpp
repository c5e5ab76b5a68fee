#include "cef/chromium/Certificates.h"

#include "cef/chromium/CookieRules.h"
#include "cef/chromium/IoThread.h"
#include "cef/chromium/MessageLoop.h"
#include "cef/chromium/NetErrors.h"
#include "cef/chromium/RequestCallback.h"
#include "cef/chromium/SslInfo.h"
#include "include/cef_request_handler.h"

namespace engine {

Certificates::Certificates(DevToolsConnection& connection, NetworkHooks& hooks)
    : connection_(connection), hooks_(hooks) {}

void Certificates::Subscribe() {
  connection_.On("Security.certificateError",
                 [this](const std::string&, const JsonValue& params) { OnError(params); });
}

// On the browser as a whole only: pages would report the same errors a second time.
void Certificates::Enable() {
  connection_.Send("", "Security.enable");
  connection_.Send("", "Security.setOverrideCertificateErrors",
                   JsonObject().Add("override", true));
}

void Certificates::OnError(const JsonValue& params) {
  const int64_t event = NumberAt(params, "eventId");
  const std::string url = TextAt(params, "requestURL");
  const std::string error = TextAt(params, "errorType");
  const CefRefPtr<Browser> browser = hooks_.LoadingMainFrame(url);
  Url parsed;
  if (!browser.get() || !ParseUrl(url, &parsed)) {
    AnswerEvent(event, false);
    return;
  }
  for (auto& [number, open] : questions_) {
    if (open.target_id == browser->target_id() && open.host == parsed.host && open.error == error) {
      open.events.push_back(event);
      return;
    }
  }
  const int question = ++last_question_;
  questions_[question] = {browser->target_id(), parsed.host, error, {event}};
  MessageLoop::Get().PostTask([this, question, browser, host = parsed.host, error, url] {
    Ask(question, browser, host, error, url);
  });
}

void Certificates::Ask(int question, const CefRefPtr<Browser>& browser, const std::string& host,
                       const std::string& error, const std::string& url) {
  const CefRefPtr<CefClient> client = browser->client();
  const CefRefPtr<CefRequestHandler> handler = client.get() ? client->GetRequestHandler() : nullptr;
  if (!handler.get()) {
    Answer(question, false);
    return;
  }
  const int code = NetErrorCode(error);
  std::optional<uint32_t> status;
  if (status_source_) status = status_source_(host);
  const uint32_t bits = status.value_or(0) | CertStatusBit(code);
  const CefRefPtr<RequestCallback> callback =
      new RequestCallback([this, question](bool allow) { Answer(question, allow); });
  if (!handler->OnCertificateError(browser.get(), static_cast<cef_errorcode_t>(code), url,
                                   new SslInfo(static_cast<cef_cert_status_t>(bits)),
                                   callback.get())) {
    callback->Cancel();
  }
}

void Certificates::Answer(int question, bool allow) {
  IoThread::Get().PostTask([this, question, allow] {
    const auto found = questions_.find(question);
    if (found == questions_.end()) return;
    for (const int64_t event : found->second.events) AnswerEvent(event, allow);
    questions_.erase(found);
  });
}

void Certificates::AnswerEvent(int64_t event, bool allow) {
  connection_.Send(
      "", "Security.handleCertificateError",
      JsonObject().Add("eventId", event).Add("action", allow ? "continue" : "cancel"));
}

void Certificates::BrowserGone(const std::string& target_id) {
  for (auto it = questions_.begin(); it != questions_.end();) {
    it = it->second.target_id == target_id ? questions_.erase(it) : std::next(it);
  }
}

}  // namespace engine
