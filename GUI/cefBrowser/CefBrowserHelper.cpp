#include "GUI/cefBrowser/CefBrowserHelper.h"

#include <string>

#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

bool Visitor::Visit(const CefCookie& cookie, int, int, bool&) {
  const std::string name = CefString(&cookie.name).ToString();
  const std::string value = CefString(&cookie.value).ToString();
  KXLOG(4, kCefModule, "inside Visitor::Visit - cookie name=[%s] value.size():%d", name.c_str(),
        static_cast<int>(value.size()));
  KXLOG(5, kCefModule, "Visit(%s) = %s %s", name.c_str(),
        CefString(&cookie.domain).ToString().c_str(), CefString(&cookie.path).ToString().c_str());
  return true;
}

void ClientRequestContextHandler::OnRequestContextInitialized(CefRefPtr<CefRequestContext>) {}

bool ClientRequestContextHandler::OnBeforePluginLoad(const CefString&, const CefString&, bool,
                                                     const CefString&, CefRefPtr<CefWebPluginInfo>,
                                                     PluginPolicy*) {
  return true;
}

void AuthCompletionCallback::OnComplete() {
  KXLOG(3, kCefModule, "Inside AuthCompletionCallback OnComplete()");
}

CefRefPtr<CefRequestContext> CreateSharedRequestContext() {
  return CefRequestContext::CreateContext(CefRequestContext::GetGlobalContext(),
                                          new ClientRequestContextHandler);
}
