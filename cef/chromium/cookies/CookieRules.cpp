#include "cef/chromium/cookies/CookieRules.h"

#include "cef/chromium/base/Text.h"

namespace engine {

namespace {

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The addresses that have cookies.
bool IsCookieable(const Url& url) {
  return url.scheme == "http" || url.scheme == "https" || url.scheme == "ws" || url.scheme == "wss";
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

bool CookieMatchesUrl(const Cookie& cookie, const Url& url) {
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

SetCookieCheck CheckSetCookie(const std::string& url, const Cookie& cookie) {
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
  if (!HasScheme(url)) return DeleteCookiesScope::kAll;
  Url parts;
  if (!ParseUrl(url, &parts)) return DeleteCookiesScope::kInvalidUrl;
  return name.empty() ? DeleteCookiesScope::kHost : DeleteCookiesScope::kNamed;
}

bool DeletionConcerns(DeleteCookiesScope scope, const Url& url, const std::string& name,
                      const Cookie& cookie) {
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
