#include "GUI/cefBrowser/CefBrowserHelper.h"

#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

bool Visitor::Visit(const CefCookie& cookie, int, int, bool&) {
  const std::string name = CefString(&cookie.name).ToString();
  const std::string value = CefString(&cookie.value).ToString();
  KXLOG(4, kCefModule, "inside Visitor::Visit - cookie name=[%s] value.size():%d", name.c_str(),
        static_cast<int>(value.size()));
  return true;
}

void ClientRequestContextHandler::OnRequestContextInitialized(CefRefPtr<CefRequestContext>) {}

bool ClientRequestContextHandler::OnBeforePluginLoad(const CefString&, const CefString&, bool,
                                                     const CefString&, CefRefPtr<CefWebPluginInfo>,
                                                     PluginPolicy*) {
  return true;
}

CefRefPtr<CefRequestContext> CreateSharedRequestContext() {
  return CefRequestContext::CreateContext(CefRequestContext::GetGlobalContext(),
                                          new ClientRequestContextHandler);
}

std::wstring SiteOfAddress(const std::wstring& address) {
  size_t slash = address.find(L'/');
  for (int further = 0; further < 2 && slash != std::wstring::npos; ++further) {
    slash = address.find(L'/', slash + 1);
  }
  return address.substr(0, slash);
}
