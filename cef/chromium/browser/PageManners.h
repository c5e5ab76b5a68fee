// What pages are kept from in a window without an address bar, and what its keys do.

#ifndef CEF_CHROMIUM_BROWSER_PAGEMANNERS_H_
#define CEF_CHROMIUM_BROWSER_PAGEMANNERS_H_

#include <string>

#include "cef/chromium/base/Json.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// A build that is staged for development may open the developer tools.
#ifdef EB_STAGED
inline constexpr bool kDeveloper = true;
#else
inline constexpr bool kDeveloper = false;
#endif

// For each session of a page, its frames included: whatever would open a tab opens a bare window,
// with its opener if it is to have one; keys and menus that lead into the browser do nothing;
// Ctrl+Q closes as Ctrl+W does. Needs Page.enable and Runtime.enable.
void EnablePageManners(DevToolsConnection& connection, const std::string& session);

// Whether a Runtime.bindingCalled is about that.
bool AsksToClose(const JsonValue& call);

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_PAGEMANNERS_H_
