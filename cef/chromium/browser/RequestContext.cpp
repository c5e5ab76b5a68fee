#include "cef/chromium/browser/RequestContext.h"

#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/cookies/CookieManager.h"

namespace engine {

CefRefPtr<CefCookieManager> RequestContext::GetCookieManager(
    CefRefPtr<CefCompletionCallback> callback) {
  if (handler_.get() && !handler_told_.exchange(true)) {
    CefRefPtr<RequestContext> self = this;
    if (MessageLoop::Get().OnUiThread()) {
      handler_->OnRequestContextInitialized(self.get());
    } else {
      MessageLoop::Get().PostTask(
          [self] { self->handler_->OnRequestContextInitialized(self.get()); });
    }
  }
  PostCompletion(callback);
  return new CookieManager(store_);
}

void RequestContext::CloseAllConnections(CefRefPtr<CefCompletionCallback> callback) {
  PostCompletion(callback);
}

}  // namespace engine
