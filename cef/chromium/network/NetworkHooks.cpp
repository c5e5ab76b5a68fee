#include "cef/chromium/network/NetworkHooks.h"

#include <utility>

#include "cef/chromium/base/HttpHeaders.h"
#include "cef/chromium/base/Text.h"
#include "cef/chromium/network/Request.h"
#include "cef/chromium/network/RequestCallback.h"
#include "cef/chromium/network/Response.h"
#include "include/cef_request_handler.h"

namespace engine {
namespace {

// Requests that were given up are not heard of again, but for those of main frames.
constexpr size_t kMostPending = 4096;

cef_resource_type_t ResourceType(const std::string& type, bool main_frame) {
  static const std::map<std::string, cef_resource_type_t> kTypes = {
      {"Stylesheet", RT_STYLESHEET},
      {"Script", RT_SCRIPT},
      {"Image", RT_IMAGE},
      {"Font", RT_FONT_RESOURCE},
      {"Media", RT_MEDIA},
      {"XHR", RT_XHR},
      {"Fetch", RT_XHR},
      {"EventSource", RT_XHR},
      {"Prefetch", RT_PREFETCH},
      {"Ping", RT_PING},
      {"CSPViolationReport", RT_CSP_REPORT}};
  if (type == "Document") return main_frame ? RT_MAIN_FRAME : RT_SUB_FRAME;
  const auto found = kTypes.find(type);
  return found == kTypes.end() ? RT_SUB_RESOURCE : found->second;
}

// The number in "interception-job-7.1": the same for every hop.
uint64 RequestNumber(const std::string& id) {
  const size_t digits = id.find_first_of("0123456789");
  return digits == std::string::npos ? 0 : std::strtoull(id.c_str() + digits, nullptr, 10);
}

// Requests that no client ever sees: icons, manifests and cross-origin preflights. Chromium counts
// icons and manifests among the others, of which these alone ask for images or are of medium
// urgency.
bool IsInternal(const std::string& type, const JsonValue& request) {
  if (type != "Other") return type == "Preflight" || type == "Manifest";
  const JsonValue* headers = MemberAt(request, "headers");
  return (headers && StartsWith(TextAt(*headers, "Accept"), "image/")) ||
         TextAt(request, "initialPriority") == "Medium";
}

bool IsRedirect(int64_t status, const HeaderMap& headers) {
  switch (status) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
      return !HeaderValue(headers, "Location").empty();
    default:
      return false;
  }
}

CefRefPtr<CefResponse> MakeResponse(const JsonValue& params, HeaderMap headers) {
  Response::Data data;
  data.status = static_cast<int>(NumberAt(params, "responseStatusCode"));
  data.mime_type = MediaType(HeaderValue(headers, "Content-Type").ToString());
  data.headers = std::move(headers);
  return new Response(std::move(data));
}

CefRefPtr<CefResourceRequestHandler> FindHandler(const CefRefPtr<Browser>& browser,
                                                 const CefRefPtr<CefFrame>& frame,
                                                 const CefRefPtr<CefRequest>& request) {
  const cef_resource_type_t type = request->GetResourceType();
  const bool navigation = type == RT_MAIN_FRAME || type == RT_SUB_FRAME;
  HeaderMap headers;
  request->GetHeaderMap(headers);
  bool disable_default_handling = false;
  CefRefPtr<CefResourceRequestHandler> handler;
  const CefRefPtr<CefClient> client = browser->client();
  if (client.get()) {
    const CefRefPtr<CefRequestHandler> requests = client->GetRequestHandler();
    if (requests.get()) {
      handler = requests->GetResourceRequestHandler(browser.get(), frame, request, navigation,
                                                    false, HeaderValue(headers, "Origin"),
                                                    disable_default_handling);
    }
  }
  return handler;
}

}  // namespace

NetworkHooks::NetworkHooks(DevToolsConnection& connection, BrowserTable& table)
    : connection_(connection), table_(table) {}

void NetworkHooks::Subscribe() {
  connection_.On("Fetch.requestPaused",
                 [this](const std::string&, const JsonValue& params) { OnPaused(params); });
  connection_.On("Fetch.authRequired", [this](const std::string&, const JsonValue& params) {
    connection_.Send("", "Fetch.continueWithAuth",
                     JsonObject()
                         .Add("requestId", TextAt(params, "requestId"))
                         .AddJson("authChallengeResponse", R"({"response":"CancelAuth"})"));
  });
}

void NetworkHooks::Enable() {
  connection_.Send("", "Fetch.enable",
                   JsonObject()
                       .AddJson("patterns", R"([{"urlPattern":"*","requestStage":"Request"},)"
                                            R"({"urlPattern":"*","requestStage":"Response"}])")
                       .Add("handleAuthRequests", true));
  connection_.Send("", "Browser.setDownloadBehavior", JsonObject().Add("behavior", "deny"));
}

void NetworkHooks::Continue(const std::string& id) {
  connection_.Send("", "Fetch.continueRequest", JsonObject().Add("requestId", id));
}

void NetworkHooks::Abort(const std::string& id) {
  connection_.Send("", "Fetch.failRequest",
                   JsonObject().Add("requestId", id).Add("errorReason", "Aborted"));
}

void NetworkHooks::OnPaused(const JsonValue& params) {
  const std::string id = TextAt(params, "requestId");
  if (MemberAt(params, "responseErrorReason")) {
    OnFailure(id, params);
  } else if (MemberAt(params, "responseStatusCode")) {
    OnResponse(id, params);
  } else {
    OnRequest(id, params);
  }
}

// What the client has to know of it comes another way.
void NetworkHooks::OnFailure(const std::string& id, const JsonValue& params) {
  const bool begun = pending_.erase(KeyOf(id)) == 0;
  if (document_failing_ && TextAt(params, "resourceType") == "Document") {
    document_failing_(params, begun, [this, id] { Continue(id); });
  } else {
    Continue(id);
  }
}

bool NetworkHooks::Describe(const JsonValue& params, Pending* pending) const {
  const JsonValue* request = MemberAt(params, "request");
  if (!request) return false;
  const std::string type = TextAt(params, "resourceType");
  const std::string frame_id = TextAt(params, "frameId");
  pending->url = TextAt(*request, "url");
  if (IsInternal(type, *request)) return false;

  pending->browser = table_.ByFrame(frame_id);
  const bool known_frame = pending->browser.get() != nullptr;
  if (!known_frame) pending->browser = table_.Newest();
  if (!pending->browser.get()) return false;
  pending->main_frame =
      known_frame && type == "Document" && frame_id == pending->browser->target_id();
  pending->frame = pending->browser->FrameById(known_frame ? frame_id : "");

  Request::Data data;
  data.url = pending->url + TextAt(*request, "urlFragment");
  data.headers = RequestHeaders(*request, &data.referrer);
  data.resource_type = ResourceType(type, pending->main_frame);
  pending->request = new Request(std::move(data));
  return true;
}

void NetworkHooks::OnRequest(const std::string& id, const JsonValue& params) {
  Pending pending;
  const bool described = Describe(params, &pending);
  // A redirect comes as a new request, which is when its address is known.
  NotifyRedirect(TextAt(params, "redirectedRequestId"), pending.url);
  if (!described) {
    Continue(id);
    return;
  }
  pending.handler = FindHandler(pending.browser, pending.frame, pending.request);
  Keep(id, pending);
  const CefRefPtr<CefResourceRequestHandler> handler = pending.handler;
  if (!handler.get()) {
    Continue(id);
    return;
  }
  const CefRefPtr<CefBrowser> browser = pending.browser.get();
  handler->GetCookieAccessFilter(browser, pending.frame, pending.request);
  const CefRefPtr<RequestCallback> callback =
      new RequestCallback([this, id](bool allow) { allow ? Continue(id) : Abort(id); });
  switch (handler->OnBeforeResourceLoad(browser, pending.frame, pending.request, callback.get())) {
    case RV_CONTINUE:
      callback->Disarm();
      handler->GetResourceHandler(browser, pending.frame, pending.request);
      Continue(id);
      break;
    // The client keeps the callback and answers later, on any thread.
    case RV_CONTINUE_ASYNC:
      break;
    default:
      callback->Disarm();
      pending_.erase(KeyOf(id));
      Abort(id);
      break;
  }
}

void NetworkHooks::NotifyRedirect(const std::string& former_id, const std::string& new_url) {
  const auto found = pending_.find(KeyOf(former_id));
  if (found == pending_.end()) return;
  const Pending former = std::move(found->second);
  pending_.erase(found);
  if (!former.handler.get() || !former.redirect.get()) return;
  CefString url = new_url;
  former.handler->OnResourceRedirect(former.browser.get(), former.frame, former.request,
                                     former.redirect, url);
}

void NetworkHooks::OnResponse(const std::string& id, const JsonValue& params) {
  HeaderMap headers = ResponseHeaders(params);
  const bool redirect = IsRedirect(NumberAt(params, "responseStatusCode"), headers);
  const auto found = pending_.find(KeyOf(id));
  if (found == pending_.end()) {
    Continue(id);
    return;
  }
  if (redirect) {
    found->second.redirect = MakeResponse(params, std::move(headers));
    Continue(id);
    return;
  }
  const Pending pending = std::move(found->second);
  pending_.erase(found);
  if (pending.handler.get() &&
      pending.handler->OnResourceResponse(pending.browser.get(), pending.frame, pending.request,
                                          MakeResponse(params, std::move(headers))) &&
      pending.browser->IsForcedToClose()) {
    // Stays held until the window is gone, so that the page does not go on meanwhile.
    return;
  }
  pending.browser->WhenSetUp([this, id] { Continue(id); });
}

NetworkHooks::Key NetworkHooks::KeyOf(const std::string& id) { return {RequestNumber(id), id}; }

template <typename Condition>
void NetworkHooks::ForgetIf(Condition condition) {
  for (auto it = pending_.begin(); it != pending_.end();) {
    it = condition(it->second) ? pending_.erase(it) : std::next(it);
  }
}

void NetworkHooks::Keep(const std::string& id, const Pending& pending) {
  if (pending.main_frame) {
    // It takes the place of whatever the window was about to load.
    ForgetIf([&](const Pending& former) {
      return former.main_frame && former.browser->target_id() == pending.browser->target_id();
    });
  }
  // The oldest one, as the numbers grow.
  if (pending_.size() >= kMostPending) pending_.erase(pending_.begin());
  pending_[KeyOf(id)] = pending;
}

void NetworkHooks::NavigationGone(const std::string& target_id, const std::string& url) {
  ForgetIf([&](const Pending& pending) {
    return pending.main_frame && pending.browser->target_id() == target_id &&
           pending.url == url.substr(0, url.find('#'));
  });
}

void NetworkHooks::BrowserGone(const std::string& target_id) {
  ForgetIf([&](const Pending& pending) { return pending.browser->target_id() == target_id; });
}

CefRefPtr<Browser> NetworkHooks::LoadingMainFrame(const std::string& url) const {
  const std::string wanted = url.substr(0, url.find('#'));
  for (const auto& entry : pending_) {
    const Pending& pending = entry.second;
    if (pending.main_frame && !pending.redirect.get() && pending.url == wanted) {
      return pending.browser;
    }
  }
  return nullptr;
}

}  // namespace engine
