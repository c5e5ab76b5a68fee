#include "cef/chromium/base/DataUrl.h"

#include <cctype>
#include <cstring>

#include "cef/chromium/base/Text.h"

namespace engine {
namespace {

constexpr char kHtml[] = "data:text/html";
constexpr char kBase64[] = ";base64";

std::string Unescape(const std::string& text) {
  std::string plain;
  for (size_t at = 0; at < text.size(); ++at) {
    const bool escaped = text[at] == '%' && at + 2 < text.size() &&
                         isxdigit(static_cast<unsigned char>(text[at + 1])) &&
                         isxdigit(static_cast<unsigned char>(text[at + 2]));
    plain += escaped ? static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16)) : text[at];
    if (escaped) at += 2;
  }
  return plain;
}

std::optional<std::string> Decode(const std::string& text) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char c : text.substr(0, text.find('='))) {
    const char* digit = c ? strchr(kDigits, c) : nullptr;
    if (!digit) return std::nullopt;
    bits = bits << 6 | static_cast<unsigned>(digit - kDigits);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xff);
  }
  return bytes;
}

}  // namespace

std::optional<std::string> HtmlOfDataUrl(const std::string& url) {
  const size_t comma = url.find(',');
  const std::string type = Lower(url.substr(0, comma));
  const size_t name = sizeof kHtml - 1;
  if (comma == std::string::npos || !StartsWith(type, kHtml)) return std::nullopt;
  if (type.size() > name && type[name] != ';') return std::nullopt;
  const std::string text = Unescape(url.substr(comma + 1));
  const size_t mark = sizeof kBase64 - 1;
  const bool encoded = type.size() >= mark && type.compare(type.size() - mark, mark, kBase64) == 0;
  return encoded ? Decode(text) : text;
}

}  // namespace engine
