// The fakes keep the order of events that sessions and handler rely on.

#include <gtest/gtest.h>

#include "testing/support/FakeCef.h"

namespace {

using Lines = std::vector<std::string>;

class Client : public CefClient, public CefLifeSpanHandler {
 public:
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  void OnAfterCreated(CefRefPtr<CefBrowser> created) override {
    EXPECT_TRUE(CefCurrentlyOn(TID_UI));
    browser = created;
    FakeTrace("OnAfterCreated");
  }
  bool DoClose(CefRefPtr<CefBrowser>) override {
    FakeTrace("DoClose");
    return refuse;
  }
  void OnBeforeClose(CefRefPtr<CefBrowser> closed) override {
    EXPECT_TRUE(browser->IsSame(closed));
    FakeTrace("OnBeforeClose");
    browser = nullptr;
    CefQuitMessageLoop();
  }

  CefRefPtr<CefBrowser> browser;
  bool refuse = false;

  IMPLEMENT_REFCOUNTING(Client);
};

class App : public CefApp, public CefBrowserProcessHandler {
 public:
  CefRefPtr<CefBrowserProcessHandler> GetBrowserProcessHandler() override { return this; }
  void OnBeforeCommandLineProcessing(const CefString&, CefRefPtr<CefCommandLine> line) override {
    line->AppendSwitchWithValue("name", "value");
  }
  void OnContextInitialized() override {
    FakeTrace("OnContextInitialized");
    EXPECT_TRUE(CefBrowserHost::CreateBrowser(CefWindowInfo(), client.get(), "https://a.example/",
                                              CefBrowserSettings(), nullptr, nullptr));
    EXPECT_EQ(client->browser.get(), nullptr);
  }

  CefRefPtr<Client> client = new Client;

  IMPLEMENT_REFCOUNTING(App);
};

TEST(FakeCefTest, RunsABrowserFromStartToEnd) {
  FakeCef cef;
  cef.initialized = false;
  cef.closeCallsBack = true;
  EXPECT_EQ(CefRequestContext::GetGlobalContext().get(), nullptr);
  const CefRefPtr<App> app = new App;
  ASSERT_TRUE(CefInitialize(CefMainArgs(), CefSettings(), app.get(), nullptr));
  EXPECT_TRUE(CefCommandLine::GetGlobalCommandLine()->HasSwitch("name"));
  CefRunMessageLoop();
  const CefRefPtr<CefBrowser> browser = app->client->browser;
  ASSERT_NE(browser.get(), nullptr);
  EXPECT_EQ(browser->GetMainFrame()->GetURL().ToString(), "https://a.example/");

  app->client->refuse = true;
  browser->GetHost()->CloseBrowser(true);
  app->client->refuse = false;
  browser->GetHost()->CloseBrowser(false);
  browser->GetHost()->CloseBrowser(true);
  EXPECT_NE(app->client->browser.get(), nullptr);
  CefRunMessageLoop();
  EXPECT_TRUE(cef.quit);
  EXPECT_EQ(cef.Trace(),
            (Lines{"Initialize()", "AppendSwitch(name=value)", "OnContextInitialized",
                   "CreateBrowser(url=https://a.example/)", "RunMessageLoop()", "OnAfterCreated",
                   "CloseBrowser(id=1, force=true)", "DoClose", "CloseBrowser(id=1, force=false)",
                   "DoClose", "CloseBrowser(id=1, force=true)", "RunMessageLoop()", "OnBeforeClose",
                   "QuitMessageLoop()"}));
  cef.browsers.clear();
}

TEST(FakeCefTest, CallbacksOfTheCookieJarComeLater) {
  class Callback : public CefSetCookieCallback {
   public:
    void OnComplete(bool success) override { FakeTrace(success ? "set" : "not set"); }

    IMPLEMENT_REFCOUNTING(Callback);
  };
  FakeCef cef;
  const CefRefPtr<CefRequestContext> context =
      CefRequestContext::CreateContext(CefRequestContext::GetGlobalContext(), nullptr);
  const CefRefPtr<CefCookieManager> jar = context->GetCookieManager(nullptr);
  CefCookie cookie;
  CefString(&cookie.name) = "n";
  CefString(&cookie.path) = "/";
  EXPECT_FALSE(jar->SetCookie("", cookie, nullptr));
  EXPECT_TRUE(jar->SetCookie("https://a/", cookie, new Callback));
  EXPECT_TRUE(jar->FlushStore(nullptr));
  cef.RunTasks(TID_UI);
  EXPECT_EQ(cef.Trace({"SetCookie(url=h", "Flush", "set"}),
            (Lines{"SetCookie(url=https://a/, name=n, value=, domain=, path=/, secure=0, "
                   "httponly=0)",
                   "FlushStore()", "set"}));
}

}  // namespace
