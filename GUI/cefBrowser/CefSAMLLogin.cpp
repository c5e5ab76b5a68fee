#include "GUI/cefBrowser/CefSAMLLogin.h"

#include "GUI/newUI/CommonWebBrowser.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

constexpr char kLaunchCookie[] = "KXSAMLEMBID";
constexpr char kStateCookie[] = "KXSAMLEBSTATEID";
constexpr char kStatusCookie[] = "KXSAMLEBSTATUS";

}  // namespace

void CefSAMLLogin::OnContextInitialized() {
  KXLOG(4, kCefModule, "CefSAMLLogin::OnContextInitialized");
  PrepareBrowser();

  // The name given is the whole launch cookie text, so in practice this deletes nothing; kept on
  // purpose.
  m_cookieManager->DeleteCookies(m_url, m_cookie, nullptr);

  if (!m_samlSloUrlToClearCookies.empty()) {
    KXLOG(3, kCefModule, "CefSAMLLogin::OnContextInitialized Clearing all cookies (%s)",
          m_samlSloUrlToClearCookies.c_str());
    m_cookieManager->DeleteCookies("", "", nullptr);
    LogCookies(m_samlSloUrlToClearCookies, true);
  }

  GetDomainFromUrl(m_url, m_url_domain);
  KXLOG(3, kCefModule, "CefSAMLLogin::OnContextInitialized Setting url domain to: [%s]",
        m_url_domain.c_str());

  if (PlantLaunchCookie(kLaunchCookie)) LogCookies(m_url, false);
  OpenBrowser();
}

bool CefSAMLLogin::ProcessCookieResponse(const std::string& url, const std::string& cookies) {
  KXLOG(3, kCefModule, "CefSAMLLogin::ProcessCookieResponse url:[%s] ", url.c_str());
  std::string domain;
  GetDomainFromUrl(url, domain);
  LogCookies(url, true);
  KXLOG(4, kCefModule, "CefSAMLLogin::ProcessCookieResponse urlDomain:[%s] m_url_domain:[%s]",
        domain.c_str(), m_url_domain.c_str());

  if (domain != m_url_domain) {
    GatherIdpCookies(domain, cookies);
    return false;
  }

  std::string state;
  GetCookieforKey(cookies, kStateCookie, state);
  KXLOG(4, kCefModule,
        "CefSAMLLogin::ProcessCookieResponse cookie:[%s] kSamlAuthCookieStateID:[%s] "
        "eb_stateid:[%s]",
        cookies.c_str(), kStateCookie, state.c_str());
  if (state.empty()) return false;

  std::string status;
  GetCookieValueforKey(cookies, kStatusCookie, status);
  KXLOG(3, kCefModule, "eb_saml_stateid = %s eb_saml_status = %s ", state.c_str(), status.c_str());
  if (status == "1") {
    KXLOG(3, kCefModule, "successful saml auth ");
    m_returnData.postAuthCookie = state;
  }
  if (!m_returnData.samlIdpCookies.empty()) {
    KXLOG(3, kCefModule, "%s(): Gathered IdP(%s) cookies of size %d", "ProcessCookieResponse",
          _urlIdpHost.c_str(), static_cast<int>(m_returnData.samlIdpCookies.size()));
  }
  // A refused sign-in ends the step too; the caller sees it by the empty post-authentication
  // cookie.
  return true;
}

// The first foreign host is the identity provider. Its first response only names it; each later one
// replaces the cookies gathered before.
void CefSAMLLogin::GatherIdpCookies(const std::string& host, const std::string& cookies) {
  if (_urlIdpHost.empty()) {
    KXLOG(3, kCefModule, "Setting _urlIdpHost to %s", host.c_str());
    _urlIdpHost = host;
  } else if (host == _urlIdpHost) {
    m_returnData.samlIdpCookies = cookies;
  }
}
