#include <cwctype>

#include "GUI/newUI/CommonWebBrowser.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

constexpr wchar_t kScheme[] = L"https://";

bool Contains(const std::wstring& text, const wchar_t* part) {
  return text.find(part) != std::wstring::npos;
}

}  // namespace

void CSLOIdpLogoutHelper::SetHostname(const std::wstring& host) {
  for (const wchar_t c : host) {
    m_hostname += static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  }
  if (!Contains(m_hostname, kScheme)) m_hostname.insert(0, kScheme);
}

void CSLOIdpLogoutHelper::SetHostname(const std::string& host) { SetHostname(Utf8ToWide(host)); }

void CSLOIdpLogoutHelper::UpdateState(const std::wstring& url) {
  if (Contains(url, L"about:blank")) return;
  // Without a host an address counts as both, for the logout page and for a SAML request, and as on
  // the gateway for everything else.
  const bool hostless = m_hostname.empty();
  const bool on_gateway = hostless || url.find(m_hostname) != std::wstring::npos;
  const bool off_gateway = !on_gateway;

  if (m_state == kStarted && on_gateway && Contains(url, L"vora-na/auth/logout.cgi")) {
    m_state = kLogoutPage;
  } else if (m_state == kLogoutPage && off_gateway) {
    m_state = kLeftGateway;
    m_samlIdpLogoutRequestUrl = url;
  } else if ((hostless || off_gateway) && Contains(url, L"SAMLRequest")) {
    m_state = kSamlRequest;
  } else if (m_state == kSamlRequest && off_gateway && Contains(url, L"SAMLResponse")) {
    m_state = kSamlResponse;
  } else if (m_state == kSamlResponse && off_gateway && Contains(url, L"welcome.cgi")) {
    // Looked for off the gateway only, as inside the identity provider's address; kept on purpose.
    m_state = kWelcomePage;
  }
  KXLOG(3, kStrModuleName, "SAML SLO URL: %ls State:%d", url.c_str(), m_state);
}
