#include "cef/chromium/DisplayEvents.h"

#include <functional>

#include "cef/chromium/Browser.h"
#include "cef/chromium/MessageLoop.h"

namespace engine {
namespace {

constexpr char kTitleBinding[] = "reportTitle";
// A world of its own, which the page's scripts cannot see.
constexpr char kTitleWorld[] = "titleObserver";
// A page without a title goes by its address.
constexpr char kTitleScript[] = R"(((blank) => {
  if (window !== window.top || location.href === blank) return;
  let last;
  const tell = (title) => { if (title !== last) reportTitle(last = title); };
  const look = () => { if (document.title) tell(document.title); };
  new MutationObserver(look).observe(document,
      {subtree: true, childList: true, characterData: true});
  addEventListener('load', () => tell(document.title || location.host + location.pathname));
  look();
}))";

using DisplayTask = std::function<void(const CefRefPtr<Browser>&, CefDisplayHandler&)>;

void Post(BrowserTable& table, const std::string& session, DisplayTask task) {
  const CefRefPtr<Browser> browser = table.BySession(session);
  if (!browser.get()) return;
  MessageLoop::Get().PostTask([browser, task = std::move(task)] {
    const CefRefPtr<CefClient> client = browser->client();
    if (!client.get()) return;
    const CefRefPtr<CefDisplayHandler> handler = client->GetDisplayHandler();
    if (handler.get()) task(browser, *handler);
  });
}

cef_log_severity_t Severity(const std::string& level) {
  if (level == "error" || level == "assert") return LOGSEVERITY_ERROR;
  if (level == "warning") return LOGSEVERITY_WARNING;
  if (level == "debug" || level == "verbose") return LOGSEVERITY_VERBOSE;
  return LOGSEVERITY_INFO;
}

void PostLine(BrowserTable& table, const std::string& session, const std::string& level,
              const std::string& message, const std::string& source, int64_t line) {
  Post(table, session,
       [severity = Severity(level), message, source, line](const CefRefPtr<Browser>& browser,
                                                           CefDisplayHandler& handler) {
         handler.OnConsoleMessage(browser.get(), severity, message, source, static_cast<int>(line));
       });
}

// What the console shows of a value.
std::string ArgumentText(const JsonValue& argument) {
  if (const JsonValue* value = MemberAt(argument, "value")) {
    return value->IsString() ? TextAt(argument, "value") : JsonText(*value);
  }
  const std::string unserializable = TextAt(argument, "unserializableValue");
  if (!unserializable.empty()) return unserializable;
  const std::string description = TextAt(argument, "description");
  return description.empty() ? TextAt(argument, "type") : description;
}

void OnConsoleCall(BrowserTable& table, const std::string& session, const JsonValue& params) {
  std::string message;
  if (const JsonValue* arguments = MemberAt(params, "args"); arguments && arguments->IsArray()) {
    for (const JsonValue& argument : arguments->GetArray()) {
      if (!message.empty()) message += ' ';
      message += ArgumentText(argument);
    }
  }
  std::string source;
  int64_t line = 0;
  const JsonValue* stack = MemberAt(params, "stackTrace");
  const JsonValue* frames = stack ? MemberAt(*stack, "callFrames") : nullptr;
  if (frames && frames->IsArray() && !frames->Empty()) {
    source = TextAt((*frames)[0], "url");
    line = NumberAt((*frames)[0], "lineNumber") + 1;
  }
  PostLine(table, session, TextAt(params, "type"), message, source, line);
}

void OnException(BrowserTable& table, const std::string& session, const JsonValue& params) {
  const JsonValue* details = MemberAt(params, "exceptionDetails");
  if (!details) return;
  std::string message = TextAt(*details, "text");
  if (const JsonValue* exception = MemberAt(*details, "exception")) {
    message += " " + ArgumentText(*exception);
  }
  PostLine(table, session, "error", message, TextAt(*details, "url"),
           NumberAt(*details, "lineNumber") + 1);
}

void OnLogEntry(BrowserTable& table, const std::string& session, const JsonValue& params) {
  const JsonValue* entry = MemberAt(params, "entry");
  if (!entry) return;
  PostLine(table, session, TextAt(*entry, "level"), TextAt(*entry, "text"), TextAt(*entry, "url"),
           NumberAt(*entry, "lineNumber"));
}

}  // namespace

void SubscribeDisplayEvents(DevToolsConnection& connection, BrowserTable& table) {
  connection.On("Runtime.bindingCalled",
                [&table](const std::string& session, const JsonValue& params) {
                  if (TextAt(params, "name") != kTitleBinding) return;
                  Post(table, session,
                       [title = TextAt(params, "payload")](const CefRefPtr<Browser>& browser,
                                                           CefDisplayHandler& handler) {
                         handler.OnTitleChange(browser.get(), title);
                       });
                });
  connection.On("Runtime.consoleAPICalled",
                [&table](const std::string& session, const JsonValue& params) {
                  OnConsoleCall(table, session, params);
                });
  connection.On("Runtime.exceptionThrown",
                [&table](const std::string& session, const JsonValue& params) {
                  OnException(table, session, params);
                });
  connection.On("Log.entryAdded", [&table](const std::string& session, const JsonValue& params) {
    OnLogEntry(table, session, params);
  });
}

void EnableTitles(DevToolsConnection& connection, const std::string& session,
                  const std::string& blank_url) {
  connection.Send(session, "Runtime.addBinding",
                  JsonObject().Add("name", kTitleBinding).Add("executionContextName", kTitleWorld));
  connection.Send(session, "Page.addScriptToEvaluateOnNewDocument",
                  JsonObject()
                      .Add("worldName", kTitleWorld)
                      .Add("source", kTitleScript + ("(" + JsonQuote(blank_url) + ")")));
}

}  // namespace engine
