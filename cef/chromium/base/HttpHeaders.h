// Header maps of requests and responses.

#ifndef CEF_CHROMIUM_BASE_HTTPHEADERS_H_
#define CEF_CHROMIUM_BASE_HTTPHEADERS_H_

#include <map>
#include <string>

#include "cef/chromium/base/Json.h"
#include "include/cef_base.h"

namespace engine {

using HeaderMap = std::multimap<CefString, CefString>;

// The first value of a header; empty when there is none. Letter case of the name does not matter.
CefString HeaderValue(const HeaderMap& headers, const CefString& name);

// The media type of a Content-Type value: lower case, without parameters.
std::string MediaType(const std::string& content_type);

// The headers of Fetch.requestPaused: `request` is its request object. The cookies come under the
// exact name Cookie, and the Referer header goes to `referrer` instead of the map.
HeaderMap RequestHeaders(const JsonValue& request, std::string* referrer);

// Its responseHeaders; names as received, repeated ones repeated.
HeaderMap ResponseHeaders(const JsonValue& paused);

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_HTTPHEADERS_H_
