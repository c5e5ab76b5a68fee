#include "GUI/cefBrowser/CefEmbBrowserLogin.h"

#include <sstream>

#include "GUI/cefBrowser/CefBrowserHelper.h"
#include "GUI/newUI/CommonWebBrowser.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "platform/TerminationSignals.h"

void CefEmbBrowserLogin::OnBeforeCommandLineProcessing(const CefString&,
                                                       CefRefPtr<CefCommandLine> command_line) {
  // CEF's start has just reset the signals, and calls here before anything that takes time.
  KeepTerminationSignals();
  KXLOG(4, kCefModule, "EmbBrowserApp::OnBeforeCommandLineProcessing");
  command_line->AppendSwitch("disable-gpu");
  command_line->AppendSwitch("disable-gpu-compositing");
  command_line->AppendSwitch("disable-extensions");
  command_line->AppendSwitchWithValue("autoplay-policy", "user-gesture-required");
  command_line->AppendSwitch("ssl-client-certificate");
}

CefRefPtr<CefBrowserProcessHandler> CefEmbBrowserLogin::GetBrowserProcessHandler() { return this; }

void CefEmbBrowserLogin::OnContextInitialized() {
  KXLOG(4, kCefModule, "CefEmbBrowserLogin::OnContextInitialized");
}

EmbBrowserReturnData& CefEmbBrowserLogin::GetReturnData() { return m_returnData; }

void CefEmbBrowserLogin::SetUrl(const std::string& url) { m_url = url; }

void CefEmbBrowserLogin::SetCookie(const std::string& cookie) { m_cookie = cookie; }

void CefEmbBrowserLogin::Navigate() {}

bool CefEmbBrowserLogin::ProcessCookieResponse(const std::string&, const std::string&) {
  return false;
}

bool CefEmbBrowserLogin::CheckIfCompleted(const std::wstring&) { return false; }

bool CefEmbBrowserLogin::setCookie(std::string name, std::string value) {
  CefCookie cookie;
  CefString(&cookie.name).FromString(name);
  CefString(&cookie.value).FromString(value);
  CefString(&cookie.path).FromASCII("/");
  const bool taken = m_cookieManager->SetCookie(m_url, cookie, nullptr);
  KXLOG(4, kCefModule, "manager->SetCookie (name:%s url:%s) ret = %d", name.c_str(), m_url.c_str(),
        taken ? 1 : 0);
  return taken;
}

bool CefEmbBrowserLogin::PlantLaunchCookie(const char* key) {
  std::string item;
  GetCookieforKey(m_cookie, key, item);
  if (item.empty()) return false;

  std::istringstream pieces(item);
  std::string name;
  std::string value;
  if (std::getline(pieces, name, '=')) {
    std::getline(pieces, value, '=');
    setCookie(name, value);
  }
  return true;
}

void CefEmbBrowserLogin::LogCookies(const std::string& url, bool include_http_only) {
  m_cookieManager->VisitUrlCookies(url, include_http_only, new Visitor);
}
