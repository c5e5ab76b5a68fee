// How a session makes, opens and closes its browser: what it does by way of the handler, which in
// turn asks the session.

#include "GUI/cefBrowser/CefBrowserHandler.h"
#include "GUI/cefBrowser/CefBrowserHelper.h"
#include "GUI/cefBrowser/CefEmbBrowserLogin.h"
#include "include/cef_browser.h"

// Here, where the type of m_handler is known.
CefEmbBrowserLogin::CefEmbBrowserLogin() = default;
CefEmbBrowserLogin::~CefEmbBrowserLogin() = default;

void CefEmbBrowserLogin::PrepareBrowser() {
  m_commandLine = CefCommandLine::GetGlobalCommandLine();
  m_handler = new EmbBrowserHandler(false, this);
  m_requestContext = CreateSharedRequestContext();
  m_cookieManager = m_requestContext->GetCookieManager(nullptr);
}

void CefEmbBrowserLogin::OpenBrowser() {
  CefBrowserSettings settings;
  settings.webgl = STATE_DISABLED;
  CefWindowInfo window_info;
  CefBrowserHost::CreateBrowser(window_info, m_handler.get(), m_url, settings, nullptr, nullptr);
}

void CefEmbBrowserLogin::closeBrowserOnTimeout() {
  if (m_handler.get()) m_handler->CloseAllBrowsers(true);
}
