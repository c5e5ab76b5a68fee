// A SAML sign-in: opens the gateway's sign-in address, gathers the identity provider's cookies on
// the way and ends when the gateway's own host is sent the sign-in state cookie.

#ifndef GUI_CEFBROWSER_CEFSAMLLOGIN_H_
#define GUI_CEFBROWSER_CEFSAMLLOGIN_H_

#include <string>

#include "GUI/cefBrowser/CefEmbBrowserLogin.h"

// Hands back `postAuthCookie` (the state cookie as name=value; empty when the gateway refused) and
// `samlIdpCookies`.
class CefSAMLLogin : public virtual CefEmbBrowserLogin {
 public:
  void OnContextInitialized() override;
  bool ProcessCookieResponse(const std::string& url, const std::string& cookies) override;

  // Host of the first foreign address that answered; empty until then.
  std::string _urlIdpHost;
  // When not empty, every cookie is cleared before the sign-in. Set by the driver.
  std::string m_samlSloUrlToClearCookies;

 private:
  void GatherIdpCookies(const std::string& host, const std::string& cookies);
};

#endif  // GUI_CEFBROWSER_CEFSAMLLOGIN_H_
