#include "cef/chromium/browser/LoadErrors.h"

#include "cef/chromium/base/Text.h"
#include "cef/chromium/browser/Browser.h"

namespace engine {
namespace {

// An answer of this generation only: an HTTP error without a body. It is no load error.
constexpr char kEmptyHttpError[] = "net::ERR_HTTP_RESPONSE_CODE_FAILURE";

constexpr size_t kMostErrors = 64;

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
      Cut(url + TextAt(*request, "urlFragment"), kLongestPageAddress)};
}

void LoadErrors::OnFailed(const std::string&, const JsonValue& params) {
  const std::string request = TextAt(params, "requestId");
  if (on_failed_) on_failed_(request);
  const auto found = navigations_.find(request);
  if (found == navigations_.end()) return;
  const Navigation navigation = found->second;
  navigations_.erase(found);
  const std::string error = TextAt(params, "errorText");
  const CefRefPtr<Browser> browser = table_.ByTarget(navigation.target_id);
  if (!browser.get() || error == kEmptyHttpError) return;
  errors_->Post([browser, navigation, error] {
    browser->NotifyLoadError(navigation.frame_id, error, navigation.url);
  });
}

void LoadErrors::BrowserGone(const std::string& target_id) {
  for (auto it = navigations_.begin(); it != navigations_.end();) {
    it = it->second.target_id == target_id ? navigations_.erase(it) : std::next(it);
  }
}

}  // namespace engine
