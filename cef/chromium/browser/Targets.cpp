// From a target to a browser:
//   1. Chromium attaches us to every new page, frame and worker before it runs, so nothing is sent
//      or loaded unseen. Each session has to ask for this again on behalf of its own children.
//   2. The browser enters the table before any command is sent: what the commands enable produces
//      events, and those look for it there.
//   3. The page is set up, and then let run. Commands on a session keep their order, so the set-up
//      need not be waited for.
//   4. The client hears of the browser on the UI thread. A popup is let run only after that, since
//      its first request must belong to a browser that the client knows. An ordered page is blank
//      and may run at once.
//   5. An ordered page asks for its address as soon as all cookies that were planted so far are
//      stored. The document itself is held until the renderer has answered, so that the set-up is
//      in force: Chromium sends the request long before the window's renderer is there.
//   6. When the target is gone, the browser leaves the table first, so that no event finds it any
//      more; then everybody forgets what they keep for it; OnBeforeClose comes last.

#include "cef/chromium/browser/Targets.h"

#include <utility>

#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/base/Text.h"
#include "cef/chromium/browser/DisplayEvents.h"
#include "cef/chromium/browser/LoadErrors.h"
#include "cef/chromium/browser/PageManners.h"
#include "cef/chromium/browser/TitleText.h"
#include "cef/chromium/process/AppWindow.h"

namespace engine {
namespace {

JsonObject AutoAttach(bool root) {
  JsonObject params;
  params.Add("autoAttach", true).Add("waitForDebuggerOnStart", true).Add("flatten", true);
  // Without these exclusions every tabbed window adds targets for its toolbar.
  if (root) {
    params.AddJson("filter",
                   R"([{"type":"browser_ui","exclude":true},{"type":"tab","exclude":true},{}])");
  }
  return params;
}

// Pages of the browser itself, such as the new tab or the help that a shortcut opens. Pages stop
// these keys (see PageManners), but only once they have the keyboard.
bool IsBrowserPage(const std::string& url) {
  return StartsWith(url, "chrome://") || StartsWith(url, "chrome-untrusted://") ||
         StartsWith(url, "chrome-extension://") || StartsWith(url, "view-source:") ||
         StartsWith(url, "https://support.google.com/chrome");
}

}  // namespace

Targets::Targets(DevToolsConnection& connection, BrowserTable& table, BrowserFactory& factory,
                 WindowTitles& windows)
    : connection_(connection), table_(table), factory_(factory), windows_(windows) {}

void Targets::OnGone(std::function<void(const CefRefPtr<Browser>&)> handler) {
  on_gone_ = std::move(handler);
}

void Targets::SetBarrier(std::function<void(std::function<void()>)> barrier) {
  barrier_ = std::move(barrier);
}

void Targets::Subscribe() {
  connection_.On(
      "Target.attachedToTarget",
      [this](const std::string& session, const JsonValue& params) { OnAttached(session, params); });
  connection_.On("Target.detachedFromTarget", [this](const std::string&, const JsonValue& params) {
    table_.RemoveSession(TextAt(params, "sessionId"));
  });
  connection_.On("Target.targetDestroyed", [this](const std::string&, const JsonValue& params) {
    Gone(TextAt(params, "targetId"));
  });
}

void Targets::Enable() {
  connection_.Send("", "Target.setDiscoverTargets", JsonObject().Add("discover", true));
  connection_.Send("", "Target.setAutoAttach", AutoAttach(true));
}

void Targets::OnAttached(const std::string& parent_session, const JsonValue& params) {
  const JsonValue* info = MemberAt(params, "targetInfo");
  if (!info) return;
  const std::string session = TextAt(params, "sessionId");
  if (TextAt(*info, "type") == "page") {
    AttachPage(session, *info);
  } else if (StartsWith(TextAt(*info, "url"), "devtools://") && !kDeveloper) {
    Close(TextAt(*info, "targetId"), session);
  } else {
    AttachPart(parent_session, session, *info);
  }
}

void Targets::AttachPage(const std::string& session, const JsonValue& info) {
  const std::string target = TextAt(info, "targetId");
  const std::string url = TextAt(info, "url");
  if (table_.ByTarget(target).get()) {
    LetRun(session);
    return;
  }

  CefRefPtr<Browser> opener = table_.ByTarget(TextAt(info, "openerId"));
  if (!opener.get() && !IsBrowserPage(url)) {
    if (const std::optional<BrowserOrder> order = factory_.Take()) {
      AttachOrdered(target, session, *order);
      return;
    }
    // A page that opens a window without giving it access to itself does not count as its opener.
    // The first page is a window of ours that came too late.
    if (!StartsWith(url, AppWindowUrlStart())) opener = table_.Newest();
  }
  if (opener.get()) {
    AttachPopup(target, session, *opener.get());
    return;
  }
  Close(target, session);
}

void Targets::Close(const std::string& target, const std::string& session) {
  LetRun(session);
  connection_.Send("", "Target.closeTarget", JsonObject().Add("targetId", target));
}

CefRefPtr<Browser> Targets::AddBrowser(const std::string& target, const std::string& session,
                                       CefRefPtr<CefClient> client,
                                       CefRefPtr<CefRequestContext> context, bool popup) {
  const auto session_of_frame = [this](const std::string& frame_id) {
    return table_.SessionOfFrame(frame_id);
  };
  const CefRefPtr<Browser> browser =
      new Browser(connection_, session_of_frame, target, session, client, context, popup);
  table_.Add(browser);
  SetUpPage(session, true);
  return browser;
}

void Targets::AttachOrdered(const std::string& target, const std::string& session,
                            const BrowserOrder& order) {
  const CefRefPtr<Browser> browser =
      AddBrowser(target, session, order.client, order.context, false);
  windows_.Opened(target, "", HostToShow(order.url));
  connection_.Send(
      session, "Runtime.runIfWaitingForDebugger", {},
      [browser](const JsonValue*, const std::string&) { browser->SetUpIsDone(); },
      DevToolsConnection::kFirstPageLimit);
  MessageLoop::Get().PostTask([this, browser, url = order.url] {
    browser->NotifyCreated();
    LoadFirst(browser, url);
    factory_.Finish();
  });
  connection_.Send(session, "Page.bringToFront");
}

// With all the cookies that were planted for it.
void Targets::LoadFirst(const CefRefPtr<Browser>& browser, const std::string& url) {
  barrier_([browser, url] {
    if (!browser->IsForcedToClose()) browser->Navigate(browser->target_id(), url);
  });
}

void Targets::AttachPopup(const std::string& target, const std::string& session, Browser& opener) {
  const CefRefPtr<Browser> browser =
      AddBrowser(target, session, opener.client(), opener.context(), true);
  windows_.Opened(target, opener.target_id(), "");
  browser->SetUpIsDone();
  // It loads nothing before the client knows of it.
  MessageLoop::Get().PostTask([this, browser] {
    browser->NotifyCreated();
    LetRun(browser->session());
  });
}

// A frame of another process, or a worker.
void Targets::AttachPart(const std::string& parent_session, const std::string& session,
                         const JsonValue& info) {
  const CefRefPtr<Browser> browser = table_.BySession(parent_session);
  if (browser.get()) table_.AddSession(session, browser->target_id());
  if (TextAt(info, "type") == "iframe") {
    if (browser.get()) table_.SetFrame(session, TextAt(info, "targetId"));
    SetUpPage(session, false);
  } else {
    connection_.Send(session, "Target.setAutoAttach", AutoAttach(false));
  }
  LetRun(session);
}

void Targets::SetUpPage(const std::string& session, bool main) {
  connection_.Send(session, "Target.setAutoAttach", AutoAttach(false));
  connection_.Send(session, "Page.enable");
  LoadErrors::Listen(connection_, session, {});
  connection_.Send(session, "Runtime.enable");
  connection_.Send(session, "Log.enable");
  EnablePageManners(connection_, session);
  if (main) EnableTitles(connection_, session, AppWindowUrlStart());
  // The switch alone leaves client hints that tell another story.
  if (!user_agent_.empty()) {
    connection_.Send(session, "Emulation.setUserAgentOverride",
                     JsonObject().Add("userAgent", user_agent_));
  }
}

void Targets::LetRun(const std::string& session) {
  connection_.Send(session, "Runtime.runIfWaitingForDebugger");
}

void Targets::Gone(const std::string& target_id) {
  const CefRefPtr<Browser> browser = table_.Remove(target_id);
  if (!browser.get()) return;
  windows_.Gone(target_id);
  on_gone_(browser);
  MessageLoop::Get().PostTask([browser] { browser->NotifyGone(); });
}

void Targets::AllGone() {
  for (const CefRefPtr<Browser>& browser : table_.All()) Gone(browser->target_id());
}

}  // namespace engine
