// Helpers for cookie and address texts, and the states of a single logout. Nothing here knows more
// of cookies and addresses than the separators and marks that it names: searches are plain, by byte
// or character, and case-sensitive. Narrow texts are UTF-8.
//
// A cookie list is "a=1; b=2" as in a Cookie header. A cookie bundle is whole cookie texts with
// kCorvaneCookieDelimeter between them.

#ifndef GUI_NEWUI_COMMONWEBBROWSER_H_
#define GUI_NEWUI_COMMONWEBBROWSER_H_

#include <cstdint>
#include <set>
#include <string>
#include <vector>

inline constexpr wchar_t kCorvaneCookieDelimeter[] = L";;";

// `out` becomes the text from the first occurrence of `key` up to the next ";", or empty when there
// is none. The key may occur anywhere: "sid" finds "sid=1" in "xsid=1;sid=2".
void GetCookieforKey(const std::string& cookies, const std::string& key, std::string& out);

// `out` becomes what stands behind the first "=" of that item, or empty.
void GetCookieValueforKey(const std::string& cookies, const std::string& key, std::string& out);

// `out` becomes all items, blanks removed, that hold `key` anywhere, in their order.
void GetCookieListforKey(const std::string& cookies, const std::string& key,
                         std::vector<std::string>& out);

// Add the pieces of a bundle to `out`, blanks removed; a bundle that ends in the delimiter has an
// empty last piece. An empty bundle adds nothing. Each piece is logged by its length at level 4.
// The narrow form reads the bundle up to its first malformed byte.
void ParseCookies(const std::wstring& bundle, std::set<std::wstring>& out);
void ParseCookies(const std::string& bundle, std::set<std::string>& out);

// `domain` becomes host and port of an http or https address, in lower case (ASCII only). Looser
// than that: see the cases in the test. `domain` may be `url` itself.
void GetDomainFromUrl(const std::string& url, std::string& domain);

// The scheme and host of an address, as shown to the user: everything before the third "/", the
// whole address when it has fewer.
std::wstring SiteOfAddress(const std::wstring& address);

// A "data:" address that holds `data`, base64 and then percent-encoded. `mimeType` goes in as it
// is.
std::string GetDataURI(const std::string& data, const std::string& mimeType);

// Follows a single logout by the addresses that the browser loads. No lock: one thread at a time.
class CSLOIdpLogoutHelper {
 public:
  // Values of m_state; they are handed back to the starting process.
  enum State : std::int32_t {
    kStarted = 0,
    kLogoutPage = 1,    // the gateway's logout page was loaded
    kLeftGateway = 2,   // then an address off the gateway: the logout request; ends the step
    kSamlRequest = 3,   // an address off the gateway carried a SAML request
    kSamlResponse = 4,  // then one carried the response
    kWelcomePage = 5,   // then one named the welcome page; ends the step
  };

  // Appends `host`, in lower case, to the gateway's host; a second call does not replace the first.
  void SetHostname(const std::wstring& host);
  void SetHostname(const std::string& host);

  // Takes one step by the address about to be loaded, and logs the state at level 3. An address
  // that holds "about:blank" anywhere is passed over silently.
  void UpdateState(const std::wstring& url);

  std::wstring m_hostname;                 // "https://" and the gateway's host
  std::wstring m_samlIdpLogoutRequestUrl;  // the address that led to kLeftGateway
  std::int32_t m_state = kStarted;
};

#endif  // GUI_NEWUI_COMMONWEBBROWSER_H_
