#include "cef/chromium/base/Url.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>

#include "cef/chromium/base/Text.h"

namespace engine {

namespace {

constexpr const char* kHostSchemes[] = {"http", "https", "ws", "wss", "ftp"};

// Blanks and control characters around an address do not count.
std::string Trim(const std::string& text) {
  const auto outside = [](unsigned char c) { return c > ' '; };
  const auto begin = std::find_if(text.begin(), text.end(), outside);
  const auto end = std::find_if(text.rbegin(), text.rend(), outside).base();
  return begin < end ? std::string(begin, end) : std::string();
}

// The length of the scheme at the text's beginning, without its colon; 0 if there is none.
size_t SchemeLength(const std::string& text) {
  const size_t colon = text.find(':');
  if (colon == std::string::npos || colon == 0 || !isalpha(static_cast<unsigned char>(text[0]))) {
    return 0;
  }
  const bool valid =
      std::all_of(text.begin(), text.begin() + static_cast<ptrdiff_t>(colon),
                  [](unsigned char c) { return isalnum(c) || c == '+' || c == '-' || c == '.'; });
  return valid ? colon : 0;
}

bool IsHost(const std::string& host) {
  if (host.empty()) return false;
  if (host.front() == '[') {
    return host.size() > 3 && host.back() == ']' &&
           host.find_first_not_of("0123456789abcdef:.", 1) == host.size() - 1;
  }
  return host.find_first_of(" \t\r\n<>\"\\^`{|}[]:%#") == std::string::npos;
}

bool IsPort(const std::string& text) {
  if (text.empty()) return true;
  if (text.size() > 5 || text.find_first_not_of("0123456789") != std::string::npos) return false;
  return std::stoi(text) <= 65535;
}

bool ParseAuthority(std::string authority, Url* url) {
  // The last one: a password may contain others.
  const size_t at = authority.rfind('@');
  if (at != std::string::npos) authority.erase(0, at + 1);
  // Colons within brackets belong to an IPv6 address.
  const size_t bracket = authority.rfind(']');
  const size_t colon = authority.find(':', bracket == std::string::npos ? 0 : bracket);
  url->host = Lower(authority.substr(0, colon));
  if (!IsHost(url->host)) return false;
  return colon == std::string::npos || IsPort(authority.substr(colon + 1));
}

}  // namespace

bool HasScheme(const std::string& text) { return SchemeLength(Trim(text)) != 0; }

bool ParseUrl(const std::string& text, Url* url) {
  const std::string address = Trim(text);
  const size_t length = SchemeLength(address);
  if (length == 0) return false;
  Url result;
  result.scheme = Lower(address.substr(0, length));
  size_t begin = length + 1;
  const bool has_host =
      std::count(std::begin(kHostSchemes), std::end(kHostSchemes), result.scheme) != 0;
  if (has_host) {
    begin = std::min(address.find_first_not_of("/\\", begin), address.size());
    const size_t end = std::min(address.find_first_of("/\\?#", begin), address.size());
    if (!ParseAuthority(address.substr(begin, end - begin), &result)) return false;
    begin = end;
  }
  result.path = address.substr(begin, address.find_first_of("?#", begin) - begin);
  if (has_host) std::replace(result.path.begin(), result.path.end(), '\\', '/');
  if (result.path.empty()) result.path = "/";
  *url = result;
  return true;
}

}  // namespace engine
