#include "cef/chromium/browser/FrameEvents.h"

#include "cef/chromium/base/PageQueue.h"

namespace engine {

void SubscribeFrameEvents(DevToolsConnection& connection, BrowserTable& table) {
  connection.On("Page.frameAttached",
                [&table](const std::string& session, const JsonValue& params) {
                  table.SetFrame(session, TextAt(params, "frameId"));
                });
  connection.On("Page.frameNavigated",
                [&table](const std::string& session, const JsonValue& params) {
                  const JsonValue* frame = MemberAt(params, "frame");
                  if (frame) table.SetFrame(session, TextAt(*frame, "id"));
                });
  connection.On("Page.frameDetached", [&table](const std::string&, const JsonValue& params) {
    // With "swap" the frame lives on in another process.
    if (TextAt(params, "reason") != "swap") table.RemoveFrame(TextAt(params, "frameId"));
  });
}

}  // namespace engine
