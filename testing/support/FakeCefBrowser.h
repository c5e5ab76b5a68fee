// A browser, its host and its frames that record what is asked of them.

#ifndef TESTING_SUPPORT_FAKECEFBROWSER_H_
#define TESTING_SUPPORT_FAKECEFBROWSER_H_

#include <string>
#include <vector>

#include "include/cef_browser.h"
#include "include/cef_client.h"
#include "include/views/cef_browser_view.h"
#include "include/views/cef_window.h"

class FakeBrowser;

// LoadURL leaves "LoadURL(id=…, url=…)", with the frame's number.
class FakeFrame : public CefFrame {
 public:
  FakeFrame(CefBrowser* browser, int64 id, bool main) : browser_(browser), id_(id), main_(main) {}

  bool IsValid() override { return browser_ != nullptr; }
  void LoadURL(const CefString& url) override;
  void ExecuteJavaScript(const CefString& code, const CefString&, int) override;
  bool IsMain() override { return main_; }
  bool IsFocused() override { return main_; }
  CefString GetName() override { return CefString(); }
  int64 GetIdentifier() override { return id_; }
  CefRefPtr<CefFrame> GetParent() override;
  CefString GetURL() override { return url; }
  CefRefPtr<CefBrowser> GetBrowser() override { return browser_; }

  void Detach() { browser_ = nullptr; }

  CefString url;

 private:
  CefBrowser* browser_;
  const int64 id_;
  const bool main_;

  IMPLEMENT_REFCOUNTING(FakeFrame);
};

// CloseBrowser leaves "CloseBrowser(id=…, force=…)"; see FakeCef::closeCallsBack.
class FakeBrowserHost : public CefBrowserHost {
 public:
  explicit FakeBrowserHost(FakeBrowser* browser) : browser_(browser) {}

  CefRefPtr<CefBrowser> GetBrowser() override;
  void CloseBrowser(bool force_close) override;
  bool TryCloseBrowser() override;
  void SetFocus(bool) override {}
  CefWindowHandle GetWindowHandle() override { return windowHandle; }
  CefWindowHandle GetOpenerWindowHandle() override { return nullptr; }
  bool HasView() override { return false; }
  CefRefPtr<CefClient> GetClient() override;
  CefRefPtr<CefRequestContext> GetRequestContext() override;

  CefWindowHandle windowHandle = nullptr;

 private:
  void Close();

  FakeBrowser* const browser_;
  bool closing_ = false;

  IMPLEMENT_REFCOUNTING(FakeBrowserHost);
};

// Has a main frame from the start. Host and frames are valid while the browser lives.
class FakeBrowser : public CefBrowser {
 public:
  FakeBrowser(int id, CefRefPtr<CefClient> client, CefRefPtr<CefRequestContext> context);
  ~FakeBrowser() override;

  CefRefPtr<CefBrowserHost> GetHost() override { return host.get(); }
  bool CanGoBack() override { return false; }
  void GoBack() override {}
  bool CanGoForward() override { return false; }
  void GoForward() override {}
  bool IsLoading() override { return false; }
  void Reload() override {}
  void ReloadIgnoreCache() override {}
  void StopLoad() override {}
  int GetIdentifier() override { return id_; }
  bool IsSame(CefRefPtr<CefBrowser> that) override {
    return that.get() && that->GetIdentifier() == id_;
  }
  bool IsPopup() override { return false; }
  bool HasDocument() override { return true; }
  CefRefPtr<CefFrame> GetMainFrame() override { return mainFrame.get(); }
  CefRefPtr<CefFrame> GetFocusedFrame() override { return mainFrame.get(); }
  CefRefPtr<CefFrame> GetFrame(int64 identifier) override;
  CefRefPtr<CefFrame> GetFrame(const CefString&) override { return mainFrame.get(); }
  size_t GetFrameCount() override { return frames_.size(); }
  void GetFrameIdentifiers(std::vector<int64>& identifiers) override;
  void GetFrameNames(std::vector<CefString>& names) override;

  CefRefPtr<FakeFrame> AddSubFrame();
  // Tells the client that the browser is gone.
  void Closed();

  const CefRefPtr<CefClient> client;
  const CefRefPtr<CefRequestContext> context;
  CefRefPtr<FakeBrowserHost> host;
  CefRefPtr<FakeFrame> mainFrame;

 private:
  const int id_;
  std::vector<CefRefPtr<FakeFrame>> frames_;

  IMPLEMENT_REFCOUNTING(FakeBrowser);
};

// SetTitle leaves "SetTitle(…)".
class FakeWindow : public CefWindow {
 public:
  bool IsValid() override { return true; }
  CefRefPtr<CefWindow> GetWindow() override { return this; }
  void SetTitle(const CefString& title) override;
  CefString GetTitle() override { return title_; }

 private:
  CefString title_;

  IMPLEMENT_REFCOUNTING(FakeWindow);
};

class FakeBrowserView : public CefBrowserView {
 public:
  bool IsValid() override { return true; }
  CefRefPtr<CefWindow> GetWindow() override { return window.get(); }
  CefRefPtr<CefBrowser> GetBrowser() override { return nullptr; }

  CefRefPtr<FakeWindow> window = new FakeWindow;

  IMPLEMENT_REFCOUNTING(FakeBrowserView);
};

#endif  // TESTING_SUPPORT_FAKECEFBROWSER_H_
