// Which cookies belong to which address, and which cookie operations are possible at all. Pure
// functions over texts.

#ifndef CEF_CHROMIUM_COOKIES_COOKIERULES_H_
#define CEF_CHROMIUM_COOKIES_COOKIERULES_H_

#include <string>

#include "cef/chromium/base/Url.h"

namespace engine {

// A cookie, as Chromium's store reports it or as a client wants it stored.
struct Cookie {
  std::string name;
  std::string value;
  // Stored: with a leading dot also for the hosts below, without one for this host only.
  // Wanted: for the hosts below in either form; "" = the host of the address only.
  std::string domain;
  std::string path;  // wanted: "" = the default path of the address
  bool secure = false;
  bool http_only = false;
  std::string partition{};  // stored: the key, as Chromium's JSON; "" as a rule
};

// True if the cookie would be sent to the address.
bool CookieMatchesUrl(const Cookie& cookie, const Url& url);

// The http form of a cookieable address, through which a cookie is stored without being forced
// Secure. Any other address is returned as it is.
std::string PlantingUrl(const std::string& url);

enum class SetCookieCheck {
  kInvalidUrl,  // the call itself fails
  kRefused,     // the call succeeds, its completion reports failure
  kStorable,
};
SetCookieCheck CheckSetCookie(const std::string& url, const Cookie& cookie);

enum class DeleteCookiesScope {
  kInvalidUrl,  // the call itself fails
  kAll,         // every cookie
  kHost,        // every host-only cookie of the host
  kNamed,       // cookies of the name that would be sent to the address
};
// What DeleteCookies(url, name) is about. A text without a scheme counts as an empty address and so
// means every cookie; kept on purpose, it is what clients of the API know.
DeleteCookiesScope CheckDeleteCookies(const std::string& url, const std::string& name);

// True if such a deletion concerns the cookie. `url` and `name` as given to CheckDeleteCookies.
bool DeletionConcerns(DeleteCookiesScope scope, const Url& url, const std::string& name,
                      const Cookie& cookie);

}  // namespace engine

#endif  // CEF_CHROMIUM_COOKIES_COOKIERULES_H_
