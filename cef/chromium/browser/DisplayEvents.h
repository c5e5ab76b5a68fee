// Titles and console lines, for CefDisplayHandler.

#ifndef CEF_CHROMIUM_BROWSER_DISPLAYEVENTS_H_
#define CEF_CHROMIUM_BROWSER_DISPLAYEVENTS_H_

#include <string>

#include "cef/chromium/browser/BrowserTable.h"
#include "cef/chromium/browser/WindowTitles.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Before the connection is opened. All must live as long as the process. Texts are cut to
// kLongestPageText; what a page says faster than the client takes it is left out, and a last line
// tells how much.
void SubscribeDisplayEvents(DevToolsConnection& connection, BrowserTable& table,
                            WindowTitles& windows);

// Has the pages of a session report their titles: Chromium itself tells of them at navigations
// only. One whose address begins with `first_page` is left out.
void EnableTitles(DevToolsConnection& connection, const std::string& session,
                  const std::string& first_page);

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_DISPLAYEVENTS_H_
