#include <functional>

#include "GUI/cefBrowser/CefBrowserHandler.h"
#include "GUI/newUI/CommonWebBrowser.h"
#include "tests/session/SessionTest.h"

namespace {

using testing::ElementsAre;

// A step that ends at a chosen address or cookie, and keeps what it was asked.
class Scripted : public CefEmbBrowserLogin {
 public:
  bool ProcessCookieResponse(const std::string& url, const std::string& cookies) override {
    FakeTrace("ProcessCookieResponse(" + url + ", " + cookies + ")");
    return cookies == "end=1";
  }
  bool CheckIfCompleted(const std::wstring& url) override {
    FakeTrace("CheckIfCompleted()");
    return url == L"https://end/";
  }
};

class Handler : public SessionTest {
 protected:
  Handler() : session(new Scripted), handler(new EmbBrowserHandler(false, session.get())) {
    session->m_handler = handler;
  }
  ~Handler() override {
    // The two hold each other.
    session->m_handler = nullptr;
    handler->m_BrowserList_.clear();
  }

  CefRefPtr<FakeBrowser> Open() {
    CefRefPtr<FakeBrowser> browser = cef.MakeBrowser();
    handler->OnAfterCreated(browser.get());
    return browser;
  }

  // The two hooks of a request, as CEF's IO thread calls them.
  cef_return_value_t Load(const CefRefPtr<FakeBrowser>& browser, const std::string& url) {
    cef.currentThread = TID_IO;
    const auto answer =
        handler->OnBeforeResourceLoad(browser.get(), nullptr, new FakeRequest(url), nullptr);
    cef.currentThread = TID_UI;
    return answer;
  }
  bool Respond(const CefRefPtr<FakeBrowser>& browser, const std::string& url,
               const std::string& cookies) {
    cef.currentThread = TID_IO;
    const bool ended = handler->OnResourceResponse(browser.get(), nullptr,
                                                   new FakeRequest(url, cookies), new FakeResponse);
    cef.currentThread = TID_UI;
    return ended;
  }

  void RefuseCertificate(const CefRefPtr<FakeBrowser>& browser) {
    EXPECT_TRUE(handler->OnCertificateError(browser.get(), ERR_CERT_AUTHORITY_INVALID, "https://a/",
                                            new FakeSSLInfo(CERT_STATUS_AUTHORITY_INVALID),
                                            new FakeRequestCallback));
  }

  static std::string Id(const CefRefPtr<FakeBrowser>& browser) {
    return std::to_string(browser->GetIdentifier());
  }

  CefRefPtr<Scripted> session;
  CefRefPtr<EmbBrowserHandler> handler;
};

TEST_F(Handler, EndsTheLoopWithTheLastBrowser) {
  auto first = Open();
  auto second = Open();
  cef.ClearTrace();

  EXPECT_FALSE(handler->DoClose(first.get()));
  EXPECT_FALSE(handler->m_IsClosing_) << "another browser is still open";
  handler->OnBeforeClose(first.get());
  EXPECT_THAT(cef.Trace(), ElementsAre());

  EXPECT_FALSE(handler->DoClose(second.get()));
  EXPECT_TRUE(handler->m_IsClosing_);
  handler->OnBeforeClose(second.get());
  EXPECT_THAT(cef.Trace(), ElementsAre("QuitMessageLoop()", "CloseAllConnections(callback=yes)"));
}

TEST_F(Handler, LeavesNoWindowBehindWhenTheRunIsOver) {
  unsetenv("DISPLAY");
  const std::function<void(const CefRefPtr<FakeBrowser>&)> ends[] = {
      [this](const auto& browser) { Respond(browser, "https://a/", "end=1"); },
      [this](const auto& browser) { RefuseCertificate(browser); },
      [this](const auto&) { handler->CloseAllBrowsers(true); },
  };
  for (const auto& end : ends) {
    session->m_handler = handler = new EmbBrowserHandler(false, session.get());
    auto first = Open();
    auto second = Open();
    end(second);
    handler->DoClose(second.get());
    cef.ClearTrace();
    handler->OnBeforeClose(second.get());
    EXPECT_THAT(cef.Trace(), ElementsAre("CloseBrowser(id=" + Id(first) + ", force=true)"));
    cef.ClearTrace();
    auto late = Open();
    EXPECT_THAT(cef.Trace(), ElementsAre("CloseBrowser(id=" + Id(late) + ", force=true)"));
    handler->OnBeforeClose(first.get());
    cef.ClearTrace();
    handler->OnBeforeClose(late.get());
    EXPECT_THAT(cef.Trace(), ElementsAre("QuitMessageLoop()", "CloseAllConnections(callback=yes)"));
  }
}

TEST_F(Handler, ClosesAllBrowsersInOrder) {
  handler->CloseAllBrowsers(false);
  EXPECT_THAT(cef.Trace(), ElementsAre()) << "without a browser nothing may happen";

  Open();
  Open();
  cef.ClearTrace();
  handler->CloseAllBrowsers(false);
  EXPECT_THAT(cef.Trace(),
              ElementsAre("CloseBrowser(id=1, force=false)", "CloseBrowser(id=2, force=false)"));
}

TEST_F(Handler, MovesACloseToTheUiThread) {
  Open();
  cef.ClearTrace();
  cef.currentThread = TID_IO;
  session->closeBrowserOnTimeout();
  EXPECT_THAT(cef.Trace(), ElementsAre("PostTask(UI)"));
  cef.RunTasks(TID_UI);
  EXPECT_THAT(cef.Trace({"CloseBrowser"}), ElementsAre("CloseBrowser(id=1, force=true)"));
}

// Data addresses lie on no host, and a decided result is not decided again.
TEST_F(Handler, GivesTheSessionTheCookiesThatWereSent) {
  auto browser = Open();
  cef.ClearTrace();
  EXPECT_FALSE(Respond(browser, "https://a/1", "x=1; y=2"));
  EXPECT_FALSE(Respond(browser, "https://a/2", "")) << "asked without cookies, too";
  EXPECT_FALSE(Respond(browser, "data:text/html;base64,AA", "end=1"));
  EXPECT_FALSE(handler->m_IsClosing_);
  EXPECT_TRUE(Respond(browser, "https://a/3", "end=1"));
  EXPECT_TRUE(handler->m_IsClosing_);
  handler->CutOffHooks();
  EXPECT_FALSE(Respond(browser, "https://a/4", "end=1"));
  EXPECT_THAT(cef.Trace(), ElementsAre("ProcessCookieResponse(https://a/1, x=1; y=2)",
                                       "ProcessCookieResponse(https://a/2, )",
                                       "ProcessCookieResponse(https://a/3, end=1)",
                                       "CloseBrowser(id=1, force=true)"));
}

TEST_F(Handler, CancelsTheLoadThatEndsTheStep) {
  auto browser = Open();
  cef.ClearTrace();
  EXPECT_EQ(Load(browser, "data:,https://end/"), RV_CONTINUE);
  EXPECT_EQ(Load(browser, "https://other/"), RV_CONTINUE);
  EXPECT_FALSE(handler->m_IsClosing_);
  EXPECT_EQ(Load(browser, "https://end/"), RV_CANCEL);
  EXPECT_TRUE(handler->m_IsClosing_);
  EXPECT_THAT(cef.Trace(),
              ElementsAre("SetFlags(8)", "SetFlags(8)", "CheckIfCompleted()", "SetFlags(8)",
                          "CheckIfCompleted()", "CloseBrowser(id=1, force=true)"));
}

TEST_F(Handler, ShowsLoadErrorsInTheFrameThatFailed) {
  auto browser = Open();
  const CefRefPtr<FakeFrame> frame = new FakeFrame(7);
  struct Case {
    const char* url;
    const char* shown;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"https://server/sso/x", "https://server"}, {"file:///x", "file://"}, {"bad", "bad"}}) {
    cef.ClearTrace();
    handler->OnLoadError(browser.get(), frame.get(), ERR_NAME_NOT_RESOLVED,
                         "net::ERR_NAME_NOT_RESOLVED", c.url);
    const std::string page =
        "<html><body bgcolor=\"white\"><h2>This site can not be reached </h2><br><h3>" +
        std::string(c.shown) + "<br> Error : net::ERR_NAME_NOT_RESOLVED (-105).</h3></body></html>";
    EXPECT_THAT(cef.Trace(),
                ElementsAre("LoadURL(id=7, url=" + GetDataURI(page, "text/html") + ")"));
  }
  cef.ClearTrace();
  handler->OnLoadError(browser.get(), frame.get(), ERR_ABORTED, "net::ERR_ABORTED", "https://a/");
  EXPECT_THAT(cef.Trace(), ElementsAre()) << "an aborted load keeps what the frame has";
}

TEST_F(Handler, AnUnanswerableCertificateQuestionIsARefusal) {
  unsetenv("DISPLAY");
  auto browser = Open();
  cef.ClearTrace();
  RefuseCertificate(browser);
  EXPECT_THAT(cef.Trace(), ElementsAre("Continue(false)", "CloseBrowser(id=1, force=true)"));
  EXPECT_TRUE(handler->m_IsClosing_);
}

TEST_F(Handler, PassesTheRest) {
  auto browser = Open();
  cef.ClearTrace();
  cef.currentThread = TID_IO;
  EXPECT_TRUE(handler->CanSendCookie(nullptr, nullptr, nullptr, CefCookie()));
  EXPECT_TRUE(handler->CanSaveCookie(nullptr, nullptr, nullptr, nullptr, CefCookie()));
  cef.currentThread = TID_UI;
  EXPECT_TRUE(handler->OnConsoleMessage(browser.get(), LOGSEVERITY_INFO, "m", "s", 1));
  // No certificate is chosen for the user.
  EXPECT_TRUE(handler->OnSelectClientCertificate(browser.get(), false, "host", 443, {}, nullptr));
}

}  // namespace
