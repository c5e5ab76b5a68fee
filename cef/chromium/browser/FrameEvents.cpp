#include "cef/chromium/browser/FrameEvents.h"

#include <utility>

namespace engine {

void SubscribeFrameEvents(
    DevToolsConnection& connection, BrowserTable& table,
    std::function<void(const std::string& session, const JsonValue& frame, bool written)>
        on_document) {
  connection.On("Page.frameAttached",
                [&table](const std::string& session, const JsonValue& params) {
                  table.SetFrame(session, TextAt(params, "frameId"));
                });
  const auto document = [&table, on_document = std::move(on_document)](bool written) {
    return [&table, on_document, written](const std::string& session, const JsonValue& params) {
      const JsonValue* frame = MemberAt(params, "frame");
      if (!frame) return;
      table.SetFrame(session, TextAt(*frame, "id"));
      if (!written) table.SetLoader(TextAt(*frame, "id"), TextAt(*frame, "loaderId"));
      on_document(session, *frame, written);
    };
  };
  connection.On("Page.frameNavigated", document(false));
  connection.On("Page.documentOpened", document(true));
  connection.On("Page.frameDetached", [&table](const std::string&, const JsonValue& params) {
    // With "swap" the frame lives on in another process.
    if (TextAt(params, "reason") != "swap") table.RemoveFrame(TextAt(params, "frameId"));
  });
}

}  // namespace engine
