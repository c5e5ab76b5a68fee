#include "cef/chromium/browser/BrowserHost.h"

#include "cef/chromium/browser/RequestContext.h"

namespace engine {

CefRefPtr<CefRequestContext> BrowserHost::GetRequestContext() {
  return browser_->context().get() ? browser_->context() : RequestContext::Global();
}

}  // namespace engine
