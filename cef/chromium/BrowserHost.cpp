#include "cef/chromium/BrowserHost.h"

#include "cef/chromium/RequestContext.h"

namespace engine {

bool BrowserHost::TryCloseBrowser() {
  if (browser_->IsForcedToClose()) return true;
  browser_->Close(false);
  return false;
}

void BrowserHost::SetFocus(bool focus) {
  if (focus) browser_->Send("Page.bringToFront");
}

CefRefPtr<CefRequestContext> BrowserHost::GetRequestContext() {
  return browser_->context().get() ? browser_->context() : RequestContext::Global();
}

}  // namespace engine
