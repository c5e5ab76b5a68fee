// Keeps the table's frames and the windows' titles up to date.

#ifndef CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_
#define CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_

#include <functional>
#include <string>

#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// How a document came into a frame: loaded, written by a script or by the client, or loaded without
// a word about it, and found a moment later.
enum class Arrival { kLoaded, kWritten, kFound };

// Before the connection is opened. Both must live as long as the process. `on_document` gets the
// description of each frame that shows another document, on the IO thread.
void SubscribeFrameEvents(
    DevToolsConnection& connection, BrowserTable& table,
    std::function<void(const std::string& session, const JsonValue& frame, Arrival arrival)>
        on_document);

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_
