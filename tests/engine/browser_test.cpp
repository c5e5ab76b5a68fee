// Windows: how they open, multiply and close.

#include <csignal>

#include "tests/engine/EngineTest.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class BrowserTest : public EngineTest {
 protected:
  // Life span lines only.
  std::vector<std::string> Lives() const {
    std::vector<std::string> lines;
    for (const std::string& line : client_->trace()) {
      for (const char* start : {"created", "do-close", "before-close"}) {
        if (line.rfind(start, 0) == 0) lines.push_back(line);
      }
    }
    return lines;
  }
};

TEST_F(BrowserTest, CloseFromAnyThreadRepeatedlyIsOneClose) {
  server_.Page("/page", "<title>t</title>");
  struct Case {
    const char* name;
    std::function<void(CefRefPtr<CefBrowserHost>)> close;
  };
  const Case cases[] = {
      {"forced twice",
       [](CefRefPtr<CefBrowserHost> host) {
         host->CloseBrowser(true);
         host->CloseBrowser(true);
       }},
      {"from the IO thread",
       [](CefRefPtr<CefBrowserHost> host) { Post(TID_IO, [host] { host->CloseBrowser(true); }); }},
      {"asked", [](CefRefPtr<CefBrowserHost> host) { host->CloseBrowser(false); }},
      {"asked, then forced", [](CefRefPtr<CefBrowserHost> host) {
         host->CloseBrowser(false);
         host->CloseBrowser(true);
       }}};
  for (const Case& c : cases) {
    client_ = new RecordingClient;
    client_->on_title = [&](CefRefPtr<CefBrowser> browser, const std::string&) {
      c.close(browser->GetHost());
    };
    Run(server_.Url("/page"));
    EXPECT_THAT(Lives(), ElementsAre("created 1", "do-close 1", "before-close 1")) << c.name;
  }
}

TEST_F(BrowserTest, CloseBeforeTheFirstLoad) {
  client_->on_created = [](CefRefPtr<CefBrowser> browser) {
    browser->GetHost()->CloseBrowser(true);
  };
  Run(server_.Url("/page"));
  EXPECT_THAT(client_->trace(), ElementsAre("created 1", "do-close 1", "before-close 1"));
  EXPECT_THAT(server_.Requests(), IsEmpty());
}

// The sign-in page goes on in the window that it opens; the run must not end with the first one.
TEST_F(BrowserTest, WindowsThatPagesOpenBecomeBrowsers) {
  server_.Page("/popup", "<title>second</title>");
  for (const char* opener :
       {"open('/popup', '_blank', 'popup,width=300,height=300')", "open('/popup')",
        "open('/popup', '_blank', 'noopener')",
        "const a = document.createElement('a'); a.href = '/popup'; a.target = '_blank';"
        " document.body.append(a); a.click()"}) {
    client_ = new RecordingClient;
    server_.Page("/page", std::string("<title>first</title><body><script>onload = () => {") +
                              opener + "}</script>");
    CefRefPtr<CefBrowser> first;
    client_->on_title = [&](CefRefPtr<CefBrowser> browser, const std::string& title) {
      if (title == "first") first = browser;
      // With the first window gone the second still runs, and its hooks with it.
      if (title == "second") {
        EXPECT_TRUE(browser->IsPopup());
        first->GetHost()->CloseBrowser(true);
        Post(
            TID_UI, [browser] { browser->GetHost()->CloseBrowser(true); }, 200);
      }
    };
    Run(server_.Url("/page"));
    EXPECT_THAT(Lives(), ElementsAre("created 1", "created 2 popup", "do-close 1", "before-close 1",
                                     "do-close 2", "before-close 2"))
        << opener;
    const std::vector<std::string> trace = client_->trace();
    const auto created = std::find(trace.begin(), trace.end(), "created 2 popup");
    const auto loads = std::find(trace.begin(), trace.end(), "before-load /popup");
    EXPECT_LT(created - trace.begin(), loads - trace.begin()) << opener;
    EXPECT_THAT(trace, Contains("response 200 /popup")) << opener;
  }
}

TEST_F(BrowserTest, ShortcutsOpenNoFurtherBrowser) {
  server_.Page("/page", "<title>typing</title>");
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string&) {
    const std::string window = TestDisplay()->WaitForWindow("typing");
    ASSERT_NE(window, "");
    TestDisplay()->Xdotool({"windowactivate", "--sync", window});
    TestDisplay()->Xdotool({"key", "ctrl+t"});
    TestDisplay()->Xdotool({"key", "ctrl+n"});
    Post(
        TID_UI,
        [browser] {
          EXPECT_EQ(TestDisplay()->WaitForWindow("New Tab", std::chrono::milliseconds(100)), "");
          browser->GetHost()->CloseBrowser(true);
        },
        1500);
  };
  Run(server_.Url("/page"));
  EXPECT_THAT(Lives(), ElementsAre("created 1", "do-close 1", "before-close 1"));
}

TEST_F(BrowserTest, PageThatHasCrashedIsSetUpAgainWhenItIsLoadedAgain) {
  server_.Page("/page", "<title>up</title><script>console.log('here')</script>");
  int titles = 0;
  client_->on_title = [&](CefRefPtr<CefBrowser> browser, const std::string&) {
    if (++titles == 2) browser->GetHost()->CloseBrowser(true);
    if (titles != 1) return;
    for (const int pid : DescendantsRunning("--type=renderer")) kill(pid, SIGKILL);
    Post(
        TID_UI, [this, browser] { browser->GetMainFrame()->LoadURL(server_.Url("/page")); }, 300);
  };
  Run(server_.Url("/page"));
  EXPECT_EQ(client_->ResponsesFor("/page").size(), 2u) << "the hooks are asked";
  EXPECT_THAT(client_->trace(), ::testing::Contains("console here").Times(2));
  for (const auto& request : server_.RequestsFor("/page")) {
    EXPECT_EQ(request.headers.count("sec-ch-ua"), 0u) << "the user agent is kept";
  }
}

TEST_F(BrowserTest, ConsoleAndTitlesOfAPage) {
  server_.Page("/page",
               "<title>one</title><script>console.log('said', 1, {a: 2});"
               "document.title = 'two'; setTimeout(() => { document.title = 'three'; }, 50);"
               "setTimeout(() => { nothing.here(); }, 100);"
               "setTimeout(() => { document.title = 'end'; }, 150);</script>");
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string& title) {
    if (title == "end") browser->GetHost()->CloseBrowser(true);
  };
  Run(server_.Url("/page"));
  EXPECT_THAT(client_->trace(), Contains("console said 1 Object"));
  EXPECT_THAT(client_->trace(), Contains("title two"));
  EXPECT_THAT(client_->trace(), Contains("title three"));
  EXPECT_THAT(client_->trace(),
              Contains(::testing::StartsWith("console Uncaught ReferenceError: nothing is not")));
}

}  // namespace
