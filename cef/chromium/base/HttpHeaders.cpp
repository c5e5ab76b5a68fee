#include "cef/chromium/base/HttpHeaders.h"

#include <strings.h>

#include <algorithm>
#include <cctype>

#include "cef/chromium/base/Text.h"

namespace engine {
namespace {

bool EqualIgnoringCase(const std::string& a, const std::string& b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

}  // namespace

CefString HeaderValue(const HeaderMap& headers, const CefString& name) {
  const std::string wanted = name.ToString();
  for (const auto& [key, value] : headers) {
    if (EqualIgnoringCase(key.ToString(), wanted)) return value;
  }
  return CefString();
}

std::string MediaType(const std::string& content_type) {
  std::string type = content_type.substr(0, content_type.find(';'));
  const auto is_blank = [](unsigned char c) { return std::isspace(c) != 0; };
  type.erase(std::remove_if(type.begin(), type.end(), is_blank), type.end());
  return Lower(type);
}

HeaderMap RequestHeaders(const JsonValue& request, std::string* referrer) {
  HeaderMap headers;
  const JsonValue* members = MemberAt(request, "headers");
  if (!members || !members->IsObject()) return headers;
  for (const auto& member : members->GetObject()) {
    const std::string name(member.name.GetString(), member.name.GetStringLength());
    const std::string value = member.value.IsString() ? member.value.GetString() : "";
    if (EqualIgnoringCase(name, "Referer")) {
      *referrer = value;
    } else {
      headers.emplace(EqualIgnoringCase(name, "Cookie") ? "Cookie" : name, value);
    }
  }
  return headers;
}

HeaderMap ResponseHeaders(const JsonValue& paused) {
  HeaderMap headers;
  const JsonValue* entries = MemberAt(paused, "responseHeaders");
  if (!entries || !entries->IsArray()) return headers;
  for (const JsonValue& entry : entries->GetArray()) {
    headers.emplace(TextAt(entry, "name"), TextAt(entry, "value"));
  }
  return headers;
}

}  // namespace engine
