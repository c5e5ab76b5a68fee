// What becomes of a certificate error:
//   1. Chromium reports it on the IO thread, and keeps the request waiting for our answer.
//   2. DevTools names only the worst fault. The others, and the certificate itself, come with the
//      network log, usually a little later. So the decision is put off by 50 ms; without that, the
//      verdict on an earlier certificate of the host could be taken for this one's.
//   3. A certificate that the user has allowed for the host passes. Otherwise only a main frame may
//      ask: nobody can judge where a page's pictures come from.
//   4. Errors of the same browser, host and fault join an open question, since a page opens several
//      connections at a time.
//   5. The client is asked on the UI thread, which may wait for the rest of the verdict; the IO
//      thread may not, and keeps serving other requests while the user thinks.
//   6. The answer goes back to the IO thread and to every request that has joined; a yes is kept.

#include "cef/chromium/network/Certificates.h"

#include <algorithm>
#include <atomic>
#include <memory>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/base/NetErrors.h"
#include "cef/chromium/base/Say.h"
#include "cef/chromium/base/Url.h"
#include "cef/chromium/network/RequestCallback.h"
#include "cef/chromium/network/SslInfo.h"
#include "include/cef_request_handler.h"

namespace engine {
namespace {

// How long after an error the verifier's verdict may arrive; as a rule it comes within 2 ms.
constexpr int kVerdictDelayMs = 50;
// On a busy machine the log may come late, but it comes. Without it the consent would hold for
// less, and the user be asked again.
constexpr std::chrono::milliseconds kVerdictLimit{2000};
constexpr size_t kMostWaiting = 256;
constexpr size_t kMostAllowed = 64;

}  // namespace

Certificates::Certificates(DevToolsConnection& connection, NetworkHooks& hooks)
    : connection_(connection), hooks_(hooks) {}

void Certificates::Subscribe() {
  connection_.On("Security.certificateError",
                 [this](const std::string&, const JsonValue& params) { OnError(params); });
}

// On the browser as a whole only: pages would report the same errors a second time.
void Certificates::Enable() {
  connection_.Send("", "Security.enable");
  connection_.Send("", "Security.setOverrideCertificateErrors", JsonObject().Add("override", true));
}

void Certificates::OnError(const JsonValue& params) {
  const int64_t event = NumberAt(params, "eventId");
  const std::string url = TextAt(params, "requestURL");
  const std::string error = TextAt(params, "errorType");
  Url parsed;
  if (waiting_.count(event) != 0) return;
  if (!ParseUrl(url, &parsed) || waiting_.size() >= kMostWaiting) {
    AnswerEvent(event, false);
    return;
  }
  waiting_.insert(event);
  // The host may show another certificate than before, and the verdict on it may come a little
  // later than the error: an older one must not be taken for it.
  IoThread::Get().PostDelayedTask(
      [this, event, url, host = parsed.host, error] { Decide(event, url, host, error); },
      kVerdictDelayMs);
}

void Certificates::Decide(int64_t event, const std::string& url, const std::string& host,
                          const std::string& error) {
  if (IsAllowed(host, error)) {
    AnswerEvent(event, true);
    return;
  }
  const CefRefPtr<Browser> browser = hooks_.LoadingMainFrame(url);
  if (!browser.get()) {
    AnswerEvent(event, false);
    return;
  }
  for (auto& [number, open] : questions_) {
    if (open.target_id == browser->target_id() && open.host == host && open.error == error) {
      open.events.push_back(event);
      return;
    }
  }
  const int question = ++last_question_;
  questions_[question] = {browser->target_id(), host, error, {event}};
  MessageLoop::Get().PostTask(
      [this, question, browser, host, error, url] { Ask(question, browser, host, error, url); });
}

bool Certificates::IsAllowed(const std::string& host, const std::string& error) const {
  const auto fault =
      fault_source_(host, CertStatusBit(NetErrorCode(error)), std::chrono::milliseconds(0));
  const Consent consent = {host, error, fault ? fault->certificate : ""};
  return std::find(allowed_.begin(), allowed_.end(), consent) != allowed_.end();
}

void Certificates::Ask(int question, const CefRefPtr<Browser>& browser, const std::string& host,
                       const std::string& error, const std::string& url) {
  const CefRefPtr<CefClient> client = browser->client();
  const CefRefPtr<CefRequestHandler> handler = client.get() ? client->GetRequestHandler() : nullptr;
  // A run that is ending asks nobody: the question would keep it from ending.
  if (!handler.get() || browser->IsForcedToClose()) {
    Answer(question, false, "");
    return;
  }
  const int code = NetErrorCode(error);
  const uint32_t worst = CertStatusBit(code);
  const CertVerdict fault = fault_source_(host, worst, kVerdictLimit).value_or(CertVerdict());
  const uint32_t bits = fault.status | worst;
  const auto refused = std::make_shared<std::atomic<bool>>(false);
  const CefRefPtr<RequestCallback> callback =
      new RequestCallback([this, question, refused, certificate = fault.certificate](bool allow) {
        *refused = !allow;
        Answer(question, allow, certificate);
      });
  if (!handler->OnCertificateError(browser.get(), static_cast<cef_errorcode_t>(code), url,
                                   new SslInfo(static_cast<cef_cert_status_t>(bits)),
                                   callback.get())) {
    callback->Cancel();
  }
  if (*refused && browser->IsForcedToClose()) SayWhatRefused(host, error);
}

void Certificates::SayWhatRefused(const std::string& host, const std::string& error) {
  MessageLoop& loop = MessageLoop::Get();
  const std::string certificate = "the certificate of " + host;
  if (loop.SignalWaits()) {
    Say("ended while " + certificate + " was in question: net::" + error);
  } else if (!loop.AlertsMustEnd()) {
    Say("closed by the user after " + certificate + " was refused: net::" + error);
  }
}

void Certificates::Answer(int question, bool allow, const std::string& certificate) {
  IoThread::Get().PostTask([this, question, allow, certificate] {
    const auto found = questions_.find(question);
    if (found == questions_.end()) return;
    if (allow) allowed_.push_back({found->second.host, found->second.error, certificate});
    if (allowed_.size() > kMostAllowed) allowed_.pop_front();
    for (const int64_t event : found->second.events) AnswerEvent(event, allow);
    questions_.erase(found);
  });
}

void Certificates::AnswerEvent(int64_t event, bool allow) {
  waiting_.erase(event);
  connection_.Send("", "Security.handleCertificateError",
                   JsonObject().Add("eventId", event).Add("action", allow ? "continue" : "cancel"));
}

void Certificates::BrowserGone(const std::string& target_id) {
  for (auto it = questions_.begin(); it != questions_.end();) {
    if (it->second.target_id != target_id) {
      ++it;
      continue;
    }
    for (const int64_t event : it->second.events) waiting_.erase(event);
    it = questions_.erase(it);
  }
}

}  // namespace engine
