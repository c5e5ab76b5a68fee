// Cookie texts and addresses, as pages may form them: a text and a key, with a NUL between them.

#include "GUI/newUI/CommonWebBrowser.h"
#include "fuzz/Fuzz.h"
#include "libs/kxaccess/utf8.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input = Text(data, size);
  const std::string text = input.substr(0, input.find('\0'));
  const std::string key = input.substr(std::min(size, text.size() + 1));

  std::string item, value;
  GetCookieforKey(text, key, item);
  GetCookieValueforKey(text, key, value);
  Require(text.find(item) != std::string::npos);
  Require(item.size() >= value.size() && item.substr(item.size() - value.size()) == value);
  std::vector<std::string> list;
  GetCookieListforKey(text, key, list);
  for (const std::string& one : list) {
    Require(one.find(key) != std::string::npos && one.find_first_of("; ") == std::string::npos);
  }
  std::set<std::string> pieces;
  ParseCookies(text, pieces);
  for (const std::string& piece : pieces) Require(piece.find(' ') == std::string::npos);

  std::string domain, itself = text;
  GetDomainFromUrl(text, domain);
  GetDomainFromUrl(itself, itself);
  Require(domain == itself && domain.size() <= text.size());
  const std::wstring wide = Utf8ToWide(text);
  Require(wide.find(SiteOfAddress(wide)) == 0);

  CSLOIdpLogoutHelper logout;
  if (!key.empty()) logout.SetHostname(key);
  for (int i = 0; i < 3; ++i) logout.UpdateState(wide);
  Require(logout.m_state >= 0 && logout.m_state <= CSLOIdpLogoutHelper::kWelcomePage);
  return 0;
}
