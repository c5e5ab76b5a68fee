#include "GUI/cefBrowser/CefSAMLLogout.h"

#include <set>

#include "GUI/newUI/ModuleNames.h"
#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

// The two states of the logout helper that end the step.
constexpr int kLeftForIdp = 2;
constexpr int kBackFromIdp = 5;

}  // namespace

void CefSAMLLogout::OnContextInitialized() {
  KXLOG(4, kCefModule, "CefSAMLLogout::OnContextInitialized");
  PrepareBrowser();
  m_cookieManager->DeleteCookies("", "", nullptr);
  GetDomainFromUrl(m_url, m_url_domain);
  m_logoutHelper.SetHostname(m_url_domain);

  std::set<std::string> cookies;
  ParseCookies(m_cookie, cookies);
  for (const std::string& cookie : cookies) {
    // Unlike in the sign-ins, everything behind the first "=" is the value.
    const size_t equals = cookie.find('=');
    if (equals == std::string::npos) continue;
    setCookie(cookie.substr(0, equals), cookie.substr(equals + 1));
  }
  LogCookies(m_url, true);
  OpenBrowser();
}

bool CefSAMLLogout::CheckIfCompleted(const std::wstring& url) {
  m_logoutHelper.UpdateState(url);
  const int state = m_logoutHelper.m_state;
  if (state != kLeftForIdp && state != kBackFromIdp) return false;

  m_returnData.samlIdpLogoutRequestUrl = WideToUtf8(m_logoutHelper.m_samlIdpLogoutRequestUrl);
  m_returnData.samlSloState = state;
  KXLOG(3, kCefModule, "CheckIfCompleted returning true");
  return true;
}
