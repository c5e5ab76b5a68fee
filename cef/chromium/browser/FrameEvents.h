// Keeps the table's frames up to date.

#ifndef CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_
#define CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_

#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Before the connection is opened. Both must live as long as the process.
void SubscribeFrameEvents(DevToolsConnection& connection, BrowserTable& table);

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_FRAMEEVENTS_H_
