#include "cef/chromium/BrowserHost.h"

#include "cef/chromium/RequestContext.h"

namespace engine {

CefRefPtr<CefRequestContext> BrowserHost::GetRequestContext() {
  return browser_->context().get() ? browser_->context() : RequestContext::Global();
}

}  // namespace engine
