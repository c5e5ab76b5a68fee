// A SAML single logout: opens the gateway's logout address and follows the pages that the browser
// visits until it leaves for the identity provider, or has come back from it.

#ifndef GUI_CEFBROWSER_CEFSAMLLOGOUT_H_
#define GUI_CEFBROWSER_CEFSAMLLOGOUT_H_

#include <string>

#include "GUI/cefBrowser/CefEmbBrowserLogin.h"
#include "GUI/newUI/CommonWebBrowser.h"

// Hands back `samlIdpLogoutRequestUrl` and `samlSloState`.
class CefSAMLLogout : public virtual CefEmbBrowserLogin {
 public:
  void OnContextInitialized() override;
  bool CheckIfCompleted(const std::wstring& url) override;

  CSLOIdpLogoutHelper m_logoutHelper;
};

#endif  // GUI_CEFBROWSER_CEFSAMLLOGOUT_H_
