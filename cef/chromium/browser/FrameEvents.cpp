#include "cef/chromium/browser/FrameEvents.h"

#include <memory>
#include <set>
#include <utility>

#include "cef/chromium/browser/Browser.h"

namespace engine {
namespace {

// Sessions end without a word here.
constexpr size_t kMostUntold = 256;

using DocumentHandler = std::function<void(const std::string&, const JsonValue&, Arrival)>;

// A page that moves to another process while that is slow to start may lose the event of its new
// document, and would go on by the host of the old one. Its scripts' contexts tell: they come anew
// with every document, after that event.
class LostDocuments {
 public:
  LostDocuments(DevToolsConnection& connection, BrowserTable& table, DocumentHandler on_document)
      : connection_(connection), table_(table), on_document_(std::move(on_document)) {}

  void ContextsCleared(const std::string& session) {
    if (untold_.size() >= kMostUntold) untold_.clear();
    if (table_.BySession(session).get()) untold_.insert(session);
  }

  void Told(const std::string& session) { untold_.erase(session); }

  void ContextCreated(const std::string& session, const JsonValue& params) {
    const JsonValue* context = MemberAt(params, "context");
    const JsonValue* about = context ? MemberAt(*context, "auxData") : nullptr;
    const CefRefPtr<Browser> browser = table_.BySession(session);
    if (!about || !browser.get() || TextAt(*about, "type") != "default") return;
    // A top frame has its page's id.
    if (TextAt(*about, "frameId") != browser->target_id() || untold_.erase(session) == 0) return;
    connection_.Send(session, "Page.getFrameTree", JsonObject(),
                     [this, session](const JsonValue* result, const std::string&) {
                       const JsonValue* tree = result ? MemberAt(*result, "frameTree") : nullptr;
                       const JsonValue* frame = tree ? MemberAt(*tree, "frame") : nullptr;
                       if (frame) Found(session, *frame);
                     });
  }

 private:
  void Found(const std::string& session, const JsonValue& frame) {
    const std::string loader = TextAt(frame, "loaderId");
    if (table_.LoaderOfFrame(TextAt(frame, "id")) == loader) return;
    table_.SetLoader(TextAt(frame, "id"), loader);
    on_document_(session, frame, Arrival::kFound);
  }

  DevToolsConnection& connection_;
  BrowserTable& table_;
  const DocumentHandler on_document_;
  std::set<std::string> untold_;  // sessions of pages
};

}  // namespace

void SubscribeFrameEvents(
    DevToolsConnection& connection, BrowserTable& table,
    std::function<void(const std::string& session, const JsonValue& frame, Arrival arrival)>
        on_document) {
  const auto lost = std::make_shared<LostDocuments>(connection, table, on_document);
  connection.On("Page.frameAttached",
                [&table](const std::string& session, const JsonValue& params) {
                  table.SetFrame(session, TextAt(params, "frameId"));
                });
  const auto document = [&table, lost, on_document = std::move(on_document)](Arrival arrival) {
    return
        [&table, lost, on_document, arrival](const std::string& session, const JsonValue& params) {
          const JsonValue* frame = MemberAt(params, "frame");
          if (!frame) return;
          const std::string id = TextAt(*frame, "id");
          table.SetFrame(session, id);
          if (arrival == Arrival::kLoaded) {
            table.SetLoader(id, TextAt(*frame, "loaderId"));
            if (TextAt(*frame, "parentId").empty()) lost->Told(session);
          }
          on_document(session, *frame, arrival);
        };
  };
  connection.On("Page.frameNavigated", document(Arrival::kLoaded));
  connection.On("Page.documentOpened", document(Arrival::kWritten));
  connection.On("Page.frameDetached", [&table](const std::string&, const JsonValue& params) {
    // With "swap" the frame lives on in another process.
    if (TextAt(params, "reason") != "swap") table.RemoveFrame(TextAt(params, "frameId"));
  });
  connection.On(
      "Runtime.executionContextsCleared",
      [lost](const std::string& session, const JsonValue&) { lost->ContextsCleared(session); });
  connection.On("Runtime.executionContextCreated",
                [lost](const std::string& session, const JsonValue& params) {
                  lost->ContextCreated(session, params);
                });
}

}  // namespace engine
