// A sign-in on the gateway's own page: watches the gateway's status cookie, which says that the
// sign-in has finished, that a host check is needed, or that it failed.

#ifndef GUI_CEFBROWSER_CEFCUSTOMSIGNINLOGIN_H_
#define GUI_CEFBROWSER_CEFCUSTOMSIGNINLOGIN_H_

#include <string>

#include "GUI/cefBrowser/CefEmbBrowserLogin.h"

// Hands back `postAuthCookie`: two cookies as name=value, each followed by ";". The caller tells
// the outcomes apart by that text. Every response is judged on its own.
class CefCustomSignInLogin : public virtual CefEmbBrowserLogin {
 public:
  void OnContextInitialized() override;
  bool ProcessCookieResponse(const std::string& url, const std::string& cookies) override;
};

#endif  // GUI_CEFBROWSER_CEFCUSTOMSIGNINLOGIN_H_
