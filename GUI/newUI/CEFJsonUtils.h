// The launch request that a run starts with and the return data that it leaves, both JSON. All
// texts are UTF-8.

#ifndef GUI_NEWUI_CEFJSONUTILS_H_
#define GUI_NEWUI_CEFJSONUTILS_H_

#include <rapidjson/document.h>

#include <cstdint>
#include <string>

// The kind of step; the numbers travel in the request.
enum WebBrowserType : std::int32_t {
  SAML_LOGIN = 1,
  CUSTOM_SIGN_IN = 2,
  SAML_LOGOUT = 3,
};

// The launch request.
struct EmbBrowserInfo {
  std::int32_t browserType = 0;          // a WebBrowserType; other values are not refused here
  std::string url;                       // the address to open first
  std::string cookie;                    // cookie text to plant before
  std::string samlSloUrlToClearCookies;  // logout address whose cookies a SAML sign-in clears
};

// The result of a session.
struct EmbBrowserReturnData {
  std::string postAuthCookie;           // the cookie obtained by signing in
  std::string samlIdpCookies;           // the identity provider's cookies
  std::string samlIdpLogoutRequestUrl;  // the identity provider's logout request address
  std::int32_t samlSloState = 0;        // how far the single logout came
};

class JsonUtils {
 public:
  // Reads a launch request: a JSON object with the four members "browsertype" (a 32-bit integer),
  // "url", "cookie" and "samlslourltoclearcookies" (strings, cut at a NUL), all of them required.
  // False, after a log line at level 1, at the first one that is missing or of another type; the
  // members before it are then filled in already.
  static bool parseRequestForEmbBrowserInfo(const std::string& request, EmbBrowserInfo& info);

  // Replaces `out` by the compact JSON of the return data: "postauthcookie", "samlidpcookies",
  // "samlidplogoutrequesturl", "samlslostate", in this order. Always true.
  static bool createRequestForEmbBrowserReturnData(std::string& out, EmbBrowserReturnData& data);
};

// Append a member to a document whose root is an object, without looking for one of that name.
void addMemberStringToDocument(rapidjson::Document& document, std::string key, std::string value);
void addMemberIntToDocument(rapidjson::Document& document, std::string key, int value);

#endif  // GUI_NEWUI_CEFJSONUTILS_H_
