// CefBrowserHost: the window's side of a browser.

#ifndef CEF_CHROMIUM_BROWSER_BROWSERHOST_H_
#define CEF_CHROMIUM_BROWSER_BROWSERHOST_H_

#include "cef/chromium/browser/Browser.h"
#include "include/cef_browser.h"

namespace engine {

// Any thread. Made anew whenever it is asked for.
class BrowserHost : public CefBrowserHost {
 public:
  explicit BrowserHost(CefRefPtr<Browser> browser) : browser_(browser) {}

  void CloseBrowser(bool force_close) override { browser_->Close(force_close); }
  // Null: the window belongs to Chromium's process. It comes to the front on its own when it opens.
  CefWindowHandle GetWindowHandle() override { return nullptr; }
  CefRefPtr<CefRequestContext> GetRequestContext() override { return browser_->context(); }

 private:
  const CefRefPtr<Browser> browser_;

  IMPLEMENT_REFCOUNTING(BrowserHost);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_BROWSERHOST_H_
