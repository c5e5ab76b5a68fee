#include "cef/chromium/cookies/CookieRules.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>

namespace engine {

namespace {

struct SchemePort {
  const char* scheme;
  int port;
};

constexpr SchemePort kHostSchemes[] = {
    {"http", 80}, {"https", 443}, {"ws", 80}, {"wss", 443}, {"ftp", 21}};

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

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

bool ParsePort(const std::string& text, int* port) {
  if (text.empty()) return true;
  if (text.size() > 5 || text.find_first_not_of("0123456789") != std::string::npos) return false;
  *port = std::stoi(text);
  return *port <= 65535;
}

bool ParseAuthority(std::string authority, Url* url) {
  const size_t at = authority.rfind('@');
  if (at != std::string::npos) authority.erase(0, at + 1);
  const size_t bracket = authority.rfind(']');
  const size_t colon = authority.find(':', bracket == std::string::npos ? 0 : bracket);
  url->host = Lower(authority.substr(0, colon));
  if (!IsHost(url->host)) return false;
  return colon == std::string::npos || ParsePort(authority.substr(colon + 1), &url->port);
}

bool IsSecure(const Url& url) { return url.scheme == "https" || url.scheme == "wss"; }

bool IsAddress(const std::string& host) {
  return host.front() == '[' || host.find_first_not_of("0123456789.") == std::string::npos;
}

// Whether the host is the domain or lies below it; the domain without a leading dot.
bool IsWithin(const std::string& host, const std::string& domain) {
  return host == domain || (!IsAddress(host) && EndsWith(host, "." + domain));
}

bool PathMatches(const std::string& cookie_path, const std::string& path) {
  if (cookie_path.empty() || !StartsWith(path, cookie_path)) return false;
  return path.size() == cookie_path.size() || cookie_path.back() == '/' ||
         path[cookie_path.size()] == '/';
}

bool HasOuterBlanks(const std::string& text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  return !text.empty() && (blank(text.front()) || blank(text.back()));
}

// Characters that end a cookie or a line in the header.
bool HasForbidden(const std::string& text) {
  return text.find_first_of(std::string(";\r\n\0", 4)) != std::string::npos;
}

}  // namespace

bool ParseUrl(const std::string& text, Url* url) {
  const std::string address = Trim(text);
  const size_t length = SchemeLength(address);
  if (length == 0) return false;
  Url result;
  result.scheme = Lower(address.substr(0, length));
  const auto known = std::find_if(std::begin(kHostSchemes), std::end(kHostSchemes),
                                  [&](const auto& entry) { return result.scheme == entry.scheme; });
  size_t begin = length + 1;
  const bool has_host = known != std::end(kHostSchemes);
  if (has_host) {
    result.port = known->port;
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

bool IsCookieable(const Url& url) {
  return url.scheme == "http" || url.scheme == "https" || url.scheme == "ws" || url.scheme == "wss";
}

bool CookieMatchesUrl(const StoredCookie& cookie, const Url& url) {
  if (!IsCookieable(url) || (cookie.secure && !IsSecure(url))) return false;
  const std::string domain = Lower(cookie.domain);
  const bool host_matches = !domain.empty() && domain.front() == '.'
                                ? IsWithin(url.host, domain.substr(1))
                                : url.host == domain;
  return host_matches && PathMatches(cookie.path, url.path);
}

std::string PlantingUrl(const std::string& url) {
  Url parts;
  if (!ParseUrl(url, &parts) || !IsCookieable(parts)) return url;
  // Cookies know no ports, and the secure form's usual port would be an odd one here.
  return "http://" + parts.host + parts.path;
}

SetCookieCheck CheckSetCookie(const std::string& url, const WantedCookie& cookie) {
  Url parts;
  if (!ParseUrl(url, &parts)) return SetCookieCheck::kInvalidUrl;
  constexpr auto kRefused = SetCookieCheck::kRefused;
  if (!IsCookieable(parts)) return kRefused;
  if (cookie.name.empty() && cookie.value.empty()) return kRefused;
  if (cookie.name.find('=') != std::string::npos) return kRefused;
  for (const std::string* text : {&cookie.name, &cookie.value, &cookie.domain, &cookie.path}) {
    if (HasForbidden(*text) || HasOuterBlanks(*text)) return kRefused;
  }
  if (!cookie.path.empty() && cookie.path.front() != '/') return kRefused;
  if (cookie.secure && !IsSecure(parts)) return kRefused;
  if (!cookie.domain.empty()) {
    const std::string domain = Lower(cookie.domain);
    if (!IsWithin(parts.host, domain.front() == '.' ? domain.substr(1) : domain)) return kRefused;
  }
  const bool host_prefix = StartsWith(cookie.name, "__Host-");
  if ((host_prefix || StartsWith(cookie.name, "__Secure-")) && !cookie.secure) return kRefused;
  if (host_prefix && (!cookie.domain.empty() || cookie.path != "/")) return kRefused;
  return SetCookieCheck::kStorable;
}

DeleteCookiesScope CheckDeleteCookies(const std::string& url, const std::string& name) {
  if (SchemeLength(Trim(url)) == 0) return DeleteCookiesScope::kAll;
  Url parts;
  if (!ParseUrl(url, &parts)) return DeleteCookiesScope::kInvalidUrl;
  return name.empty() ? DeleteCookiesScope::kHost : DeleteCookiesScope::kNamed;
}

bool DeletionConcerns(DeleteCookiesScope scope, const Url& url, const std::string& name,
                      const StoredCookie& cookie) {
  switch (scope) {
    case DeleteCookiesScope::kAll:
      return true;
    case DeleteCookiesScope::kHost:
      return Lower(cookie.domain) == url.host;
    case DeleteCookiesScope::kNamed:
      return cookie.name == name && CookieMatchesUrl(cookie, url);
    case DeleteCookiesScope::kInvalidUrl:
      break;
  }
  return false;
}

}  // namespace engine
