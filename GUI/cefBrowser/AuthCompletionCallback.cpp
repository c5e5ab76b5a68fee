#include "GUI/cefBrowser/AuthCompletionCallback.h"

#include "GUI/cefBrowser/CefBrowserHelper.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

void AuthCompletionCallback::OnComplete() {
  KXLOG(3, kCefModule, "Inside AuthCompletionCallback OnComplete()");
}
