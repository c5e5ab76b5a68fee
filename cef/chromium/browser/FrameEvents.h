// Keeps the table's frames and the windows' titles up to date.

#ifndef CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_
#define CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_

#include <functional>
#include <string>

#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Before the connection is opened. Both must live as long as the process. `on_document` gets the
// description of each frame that shows another document, on the IO thread; `written`: not
// loaded.
void SubscribeFrameEvents(
    DevToolsConnection& connection, BrowserTable& table,
    std::function<void(const std::string& session, const JsonValue& frame, bool written)>
        on_document);

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_
