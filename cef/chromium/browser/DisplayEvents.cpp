#include "cef/chromium/browser/DisplayEvents.h"

#include <functional>
#include <memory>

#include "cef/chromium/base/PageQueue.h"
#include "cef/chromium/browser/Browser.h"
#include "cef/chromium/browser/PageManners.h"

namespace engine {
namespace {

constexpr char kTitleBinding[] = "reportTitle";
// An isolated world, which the page's scripts cannot see.
constexpr char kTitleWorld[] = "titleObserver";
// A page without a title goes by its address.
constexpr char kTitleScript[] = R"(((first) => {
  if (window !== window.top || location.href.startsWith(first)) return;
  let last;
  const tell = (title) => { if (title !== last) reportTitle(last = title); };
  const look = () => { if (document.title) tell(document.title); };
  const observer = new MutationObserver(look);
  const watch = () => {
    observer.observe(document, {subtree: true, childList: true, characterData: true});
    look();
  };
  // A pop-up keeps its first, empty window for a document of its opener's site.
  addEventListener('DOMContentLoaded', watch);
  addEventListener('load', () => tell(document.title || location.host + location.pathname));
  watch();
}))";

constexpr size_t kMostLines = 256;
constexpr size_t kMostTitles = 64;

using DisplayTask = std::function<void(const CefRefPtr<Browser>&, CefDisplayHandler&)>;

void Tell(const CefRefPtr<Browser>& browser, const DisplayTask& task) {
  const CefRefPtr<CefClient> client = browser.get() ? browser->client() : nullptr;
  const CefRefPtr<CefDisplayHandler> handler = client.get() ? client->GetDisplayHandler() : nullptr;
  if (handler.get()) task(browser, *handler);
}

cef_log_severity_t Severity(const std::string& level) {
  if (level == "error" || level == "assert") return LOGSEVERITY_ERROR;
  if (level == "warning") return LOGSEVERITY_WARNING;
  if (level == "debug" || level == "verbose") return LOGSEVERITY_VERBOSE;
  return LOGSEVERITY_INFO;
}

// The consoles of all pages.
class Console {
 public:
  explicit Console(BrowserTable& table) : table_(table) {}

  bool HasRoom() { return lines_->HasRoom(); }
  void Post(const std::string& session, const std::string& level, const std::string& message,
            const std::string& source, int64_t line) {
    const CefRefPtr<Browser> browser = table_.BySession(session);
    if (!browser.get()) return;
    lines_->Post(
        [browser, severity = Severity(level), message = Cut(message), source = Cut(source), line] {
          Tell(browser, [&](const CefRefPtr<Browser>& from, CefDisplayHandler& handler) {
            handler.OnConsoleMessage(from.get(), severity, message, source, static_cast<int>(line));
          });
        });
  }

 private:
  void LeftOut(size_t count) {
    Tell(table_.Newest(), [count](const CefRefPtr<Browser>& browser, CefDisplayHandler& handler) {
      handler.OnConsoleMessage(browser.get(), LOGSEVERITY_WARNING,
                               std::to_string(count) + " console messages were left out", "", 0);
    });
  }

  BrowserTable& table_;
  const std::shared_ptr<PageQueue> lines_ =
      std::make_shared<PageQueue>(kMostLines, [this](size_t count) { LeftOut(count); });
};

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

void OnConsoleCall(Console& console, const std::string& session, const JsonValue& params) {
  std::string message;
  if (const JsonValue* arguments = MemberAt(params, "args"); arguments && arguments->IsArray()) {
    for (const JsonValue& argument : arguments->GetArray()) {
      if (message.size() > kLongestPageText) break;
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
  console.Post(session, TextAt(params, "type"), message, source, line);
}

void OnException(Console& console, const std::string& session, const JsonValue& params) {
  const JsonValue* details = MemberAt(params, "exceptionDetails");
  if (!details) return;
  std::string message = TextAt(*details, "text");
  if (const JsonValue* exception = MemberAt(*details, "exception")) {
    message += " " + ArgumentText(*exception);
  }
  console.Post(session, "error", message, TextAt(*details, "url"),
               NumberAt(*details, "lineNumber") + 1);
}

void OnLogEntry(Console& console, const std::string& session, const JsonValue& params) {
  const JsonValue* entry = MemberAt(params, "entry");
  if (!entry) return;
  console.Post(session, TextAt(*entry, "level"), TextAt(*entry, "text"), TextAt(*entry, "url"),
               NumberAt(*entry, "lineNumber"));
}

}  // namespace

void SubscribeDisplayEvents(DevToolsConnection& connection, BrowserTable& table,
                            WindowTitles& windows) {
  const auto titles = std::make_shared<PageQueue>(kMostTitles);
  connection.On("Runtime.bindingCalled",
                [&table, &windows, titles](const std::string& session, const JsonValue& params) {
                  const CefRefPtr<Browser> browser = table.BySession(session);
                  if (browser.get() && AsksToClose(params)) browser->Close(false);
                  if (!browser.get() || TextAt(params, "name") != kTitleBinding) return;
                  const std::string title = Cut(TextAt(params, "payload"));
                  windows.Titled(browser->target_id(), title);
                  titles->Post([browser, title] {
                    Tell(browser, [&](const CefRefPtr<Browser>& from, CefDisplayHandler& handler) {
                      handler.OnTitleChange(from.get(), title);
                    });
                  });
                });

  const auto console = std::make_shared<Console>(table);
  const auto has_room = [console] { return console->HasRoom(); };
  const auto line = [console](auto handle) {
    return [console, handle](const std::string& session, const JsonValue& params) {
      handle(*console, session, params);
    };
  };
  connection.On("Runtime.consoleAPICalled", line(OnConsoleCall), has_room);
  connection.On("Runtime.exceptionThrown", line(OnException), has_room);
  connection.On("Log.entryAdded", line(OnLogEntry), has_room);
}

void EnableTitles(DevToolsConnection& connection, const std::string& session,
                  const std::string& first_page) {
  connection.Send(session, "Runtime.addBinding",
                  JsonObject().Add("name", kTitleBinding).Add("executionContextName", kTitleWorld));
  connection.Send(session, "Page.addScriptToEvaluateOnNewDocument",
                  JsonObject()
                      .Add("worldName", kTitleWorld)
                      .Add("source", kTitleScript + ("(" + JsonQuote(first_page) + ")")));
}

}  // namespace engine
