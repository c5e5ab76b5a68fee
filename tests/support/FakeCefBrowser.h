// A browser, its host and its frames that record what is asked of them.

#ifndef TESTS_SUPPORT_FAKECEFBROWSER_H_
#define TESTS_SUPPORT_FAKECEFBROWSER_H_

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/views/cef_browser_view.h"
#include "include/views/cef_window.h"

class FakeBrowser;

// LoadURL leaves "LoadURL(id=…, url=…)", with the frame's number.
class FakeFrame : public CefFrame {
 public:
  FakeFrame(int id, bool main) : id_(id), main_(main) {}

  void LoadURL(const CefString& url) override;
  bool IsMain() override { return main_; }

 private:
  const int id_;
  const bool main_;

  IMPLEMENT_REFCOUNTING(FakeFrame);
};

// CloseBrowser leaves "CloseBrowser(id=…, force=…)"; see FakeCef::callsBack.
class FakeBrowserHost : public CefBrowserHost {
 public:
  explicit FakeBrowserHost(FakeBrowser* browser) : browser_(browser) {}

  void CloseBrowser(bool force_close) override;
  CefWindowHandle GetWindowHandle() override { return nullptr; }
  CefRefPtr<CefRequestContext> GetRequestContext() override;

 private:
  FakeBrowser* const browser_;
  bool closing_ = false;

  IMPLEMENT_REFCOUNTING(FakeBrowserHost);
};

// Has a main frame from the start. The host is valid while the browser lives.
class FakeBrowser : public CefBrowser {
 public:
  FakeBrowser(int id, CefRefPtr<CefClient> client, CefRefPtr<CefRequestContext> context);

  CefRefPtr<CefBrowserHost> GetHost() override { return host.get(); }
  int GetIdentifier() override { return id_; }
  bool IsSame(CefRefPtr<CefBrowser> that) override {
    return that.get() && that->GetIdentifier() == id_;
  }
  bool IsPopup() override { return false; }
  CefRefPtr<CefFrame> GetMainFrame() override { return mainFrame.get(); }

  // Tells the client that the browser closes and has closed.
  void Closed();

  const CefRefPtr<CefClient> client;
  const CefRefPtr<CefRequestContext> context;
  CefRefPtr<FakeBrowserHost> host;
  CefRefPtr<FakeFrame> mainFrame;

 private:
  const int id_;

  IMPLEMENT_REFCOUNTING(FakeBrowser);
};

// SetTitle leaves "SetTitle(…)".
class FakeWindow : public CefWindow {
 public:
  void SetTitle(const CefString& title) override;

  IMPLEMENT_REFCOUNTING(FakeWindow);
};

class FakeBrowserView : public CefBrowserView {
 public:
  CefRefPtr<CefWindow> GetWindow() override { return window.get(); }

  CefRefPtr<FakeWindow> window = new FakeWindow;

  IMPLEMENT_REFCOUNTING(FakeBrowserView);
};

#endif  // TESTS_SUPPORT_FAKECEFBROWSER_H_
