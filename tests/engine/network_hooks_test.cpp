// The hooks that every request passes.

#include <algorithm>

#include "tests/engine/EngineTest.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

namespace {

using Seen = RecordingClient::Seen;

class NetworkHooksTest : public EngineTest {
 protected:
  void CloseOnTitle() {
    client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string& title) {
      if (title == "end") browser->GetHost()->CloseBrowser(true);
    };
  }
};

TEST_F(NetworkHooksTest, ResponseHookEndsTheRunBeforeThePageGoesOn) {
  server_.Redirect("/login", "/done", "S=1; HttpOnly");
  server_.Page("/done", "<script>fetch('/after')</script>");
  client_->on_response = [](CefRefPtr<CefBrowser> browser, const Seen& seen) {
    if (seen.cookie != "S=1") return false;
    browser->GetHost()->CloseBrowser(true);
    return true;
  };
  Run(server_.Url("/login"));
  // The redirect itself has no response call.
  std::vector<std::string> trace = client_->trace();
  // The navigation given up with the window may or may not be reported in time.
  trace.erase(std::remove(trace.begin(), trace.end(), "load-error -3 net::ERR_ABORTED /done"),
              trace.end());
  EXPECT_THAT(trace, ElementsAre("created 1", "before-load /login", "redirect 302 /login to /done",
                                 "before-load /done", "response 200 /done", "do-close 1",
                                 "before-close 1"));
  EXPECT_THAT(server_.RequestsFor("/after"), IsEmpty());
}

// The window takes half a second to close, and a worker of the page does not wait for it.
TEST_F(NetworkHooksTest, ThePageDoesNotGoOnWhileItsWindowCloses) {
  server_.Page(
      "/page",
      "<script>onpagehide = () => { for (const end = Date.now() + 500; Date.now() < end;); };"
      "new Worker('/worker')</script>");
  server_.Serve("/worker", [](const LocalServer::Request&) {
    return LocalServer::Answer{
        200, "fetch('/done').then(() => fetch('/after'))", "text/javascript", {}};
  });
  client_->on_response = [](CefRefPtr<CefBrowser> browser, const Seen& seen) {
    if (seen.url.find("/done") == std::string::npos) return false;
    browser->GetHost()->CloseBrowser(true);
    return true;
  };
  Run(server_.Url("/page"));
  EXPECT_THAT(server_.RequestsFor("/done"), SizeIs(1));
  EXPECT_THAT(server_.RequestsFor("/after"), IsEmpty());
}

TEST_F(NetworkHooksTest, CancelledRequestNeverReachesTheServer) {
  server_.Redirect("/start", "/forbidden");
  client_->on_before_load = [](CefRefPtr<CefBrowser> browser, const std::string& url) {
    if (url.find("/forbidden") == std::string::npos) return RV_CONTINUE;
    browser->GetHost()->CloseBrowser(true);
    return RV_CANCEL;
  };
  Run(server_.Url("/start"));
  EXPECT_THAT(server_.RequestsFor("/forbidden"), IsEmpty());
  EXPECT_THAT(client_->trace(), Not(Contains("response 200 /forbidden")));
}

TEST_F(NetworkHooksTest, RequestsAreDescribedAsTheyAreSent) {
  server_.Page("/page?x=1", "");
  server_.Page("/page",
               "<title>begin</title><link rel=stylesheet href=/style><script src=/script></script>"
               "<img src=/image><iframe src=/frame></iframe><script>"
               "onload = () => fetch('/fetched').then(() => document.title = 'end');</script>");
  server_.Page("/frame", "inside");
  server_.Serve("/script", [](const LocalServer::Request&) {
    return LocalServer::Answer{200, "1", "Text/JavaScript; charset=utf-8", {}};
  });
  CloseOnTitle();
  Run(server_.Url("/page?x=1"));

  struct Case {
    const char* path;
    int status;
    cef_resource_type_t type;
    const char* mime_type;
  };
  const Case cases[] = {
      {"/page", 200, RT_MAIN_FRAME, "text/html"},  {"/frame", 200, RT_SUB_FRAME, "text/html"},
      {"/style", 404, RT_STYLESHEET, "text/html"}, {"/script", 200, RT_SCRIPT, "text/javascript"},
      {"/image", 404, RT_IMAGE, "text/html"},      {"/fetched", 404, RT_XHR, "text/html"}};
  for (const Case& expected : cases) {
    const std::vector<Seen> seen = client_->ResponsesFor(expected.path);
    ASSERT_THAT(seen, SizeIs(1)) << expected.path;
    EXPECT_EQ(seen[0].status, expected.status) << expected.path;
    EXPECT_EQ(seen[0].type, expected.type) << expected.path;
    EXPECT_EQ(seen[0].mime_type, expected.mime_type) << expected.path;
    const bool is_page = expected.type == RT_MAIN_FRAME;
    EXPECT_EQ(seen[0].referrer, is_page ? "" : server_.Url("/page?x=1")) << expected.path;
    EXPECT_EQ(seen[0].main_frame, expected.type != RT_SUB_FRAME) << expected.path;
  }
}

// They are no business of the client's, wherever they lie.
TEST_F(NetworkHooksTest, IconsAndManifestsCallNoHook) {
  server_.Page("/page",
               "<link rel=icon href=/picture><link rel=manifest href=/description>"
               "<script>(async function look() {"
               "  const answer = await fetch('/asked');"
               "  if (await answer.text() === 'both') document.title = 'end';"
               "  else setTimeout(look, 20); })()</script>");
  server_.Serve("/picture", [](const LocalServer::Request&) {
    return LocalServer::Answer{302, "", "text/html", {{"Location", "/moved"}}};
  });
  server_.Serve("/asked", [this](const LocalServer::Request&) {
    const bool both =
        !server_.RequestsFor("/moved").empty() && !server_.RequestsFor("/description").empty();
    return LocalServer::Answer{200, both ? "both" : "not yet", "text/plain", {}};
  });
  CloseOnTitle();
  Run(server_.Url("/page"));
  for (const char* path : {"/picture", "/moved", "/description"}) {
    EXPECT_THAT(client_->trace(), Not(Contains(std::string("before-load ") + path)));
    EXPECT_THAT(client_->ResponsesFor(path), IsEmpty());
  }
}

// What the client is told of a request's cookies decides the outcome of a sign-in.
TEST_F(NetworkHooksTest, CookieTextIsWhatTheServerReceives) {
  const std::string one = "one.test";
  const std::string two = "two.test";
  server_.Serve("/start", [&](const LocalServer::Request&) {
    return LocalServer::Answer{200,
                               "<form method=post action='" + server_.Url("/cross", two) +
                                   "'></form><script>document.forms[0].submit()</script>",
                               "text/html",
                               {{"Set-Cookie", "plain=1"},
                                {"Set-Cookie", "secret=2; HttpOnly"},
                                {"Set-Cookie", "lax=3; SameSite=Lax"},
                                {"Set-Cookie", "strict=4; SameSite=Strict"},
                                {"Set-Cookie", "deep=5; Path=/deep"},
                                {"Set-Cookie", "domain=6; Domain=one.test"}}};
  });
  server_.Serve("/cross", [&](const LocalServer::Request&) {
    return LocalServer::Answer{200,
                               "<form method=post action='" + server_.Url("/return", one) +
                                   "'><input name=a value=b></form>"
                                   "<script>document.forms[0].submit()</script>",
                               "text/html",
                               {{"Set-Cookie", "other=7"}}};
  });
  server_.Serve("/return", [&](const LocalServer::Request&) {
    return LocalServer::Answer{
        303, "", "text/html", {{"Location", "/deep/page"}, {"Set-Cookie", "back=8"}}};
  });
  server_.Serve("/deep/page", [&](const LocalServer::Request&) {
    return LocalServer::Answer{200,
                               "<iframe src='" + server_.Url("/framed", two) +
                                   "'></iframe><img src='" + server_.Url("/picture", two) +
                                   "'><script>onload = () => fetch('/omit', {credentials: 'omit'})"
                                   ".then(() => document.title = 'end');</script>",
                               "text/html",
                               {}};
  });
  server_.Page("/framed", "framed");
  CloseOnTitle();
  Run(server_.Url("/start", one));

  for (const char* path :
       {"/start", "/cross", "/return", "/deep/page", "/framed", "/picture", "/omit"}) {
    const auto received = server_.RequestsFor(path);
    ASSERT_THAT(received, SizeIs(1)) << path;
    const std::vector<Seen> seen = client_->ResponsesFor(path);
    // A redirect has no response call; its request was seen on the way.
    if (std::string(path) == "/return") {
      EXPECT_THAT(seen, IsEmpty());
    } else {
      ASSERT_THAT(seen, SizeIs(1)) << path;
      EXPECT_EQ(seen[0].cookie, received[0].cookie) << path;
    }
  }
  // As in the generation of the API: a cookie without SameSite goes along from another site.
  EXPECT_THAT(server_.RequestsFor("/return")[0].cookie, ::testing::HasSubstr("plain=1"));
  EXPECT_THAT(server_.RequestsFor("/framed")[0].cookie, "other=7");
  EXPECT_THAT(server_.RequestsFor("/deep/page")[0].cookie, ::testing::HasSubstr("secret=2"));
  EXPECT_EQ(server_.RequestsFor("/omit")[0].cookie, "");
}

}  // namespace
