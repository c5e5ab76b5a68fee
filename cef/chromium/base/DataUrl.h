// Pages that are addresses themselves.

#ifndef CEF_CHROMIUM_BASE_DATAURL_H_
#define CEF_CHROMIUM_BASE_DATAURL_H_

#include <optional>
#include <string>

namespace engine {

// The page that a "data:text/html" address holds, whatever its parameters; nothing for any other
// address, and for one that cannot be read.
std::optional<std::string> HtmlOfDataUrl(const std::string& url);

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_DATAURL_H_
