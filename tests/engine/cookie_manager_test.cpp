// The cookie jar as a client works with it.

#include "include/cef_cookie.h"
#include "include/cef_request_context.h"
#include "tests/engine/EngineTest.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

class Visitor : public CefCookieVisitor {
 public:
  Visitor(CefRefPtr<RecordingClient> log, const std::string& remove = {}, int limit = 100)
      : log_(log), remove_(remove), limit_(limit) {}

  bool Visit(const CefCookie& cookie, int count, int total, bool& deleteCookie) override {
    EXPECT_TRUE(CefCurrentlyOn(TID_UI));
    const std::string name = CefString(&cookie.name).ToString();
    log_->Record("cookie " + std::to_string(count) + "/" + std::to_string(total) + " " + name +
                 "=" + CefString(&cookie.value).ToString());
    deleteCookie = name == remove_;
    return count + 1 < limit_;
  }

 private:
  const CefRefPtr<RecordingClient> log_;
  const std::string remove_;
  const int limit_;

  IMPLEMENT_REFCOUNTING(Visitor);
};

class SetDone : public CefSetCookieCallback {
 public:
  explicit SetDone(CefRefPtr<RecordingClient> log) : log_(log) {}
  void OnComplete(bool success) override { log_->Record(success ? "stored" : "not stored"); }

 private:
  const CefRefPtr<RecordingClient> log_;

  IMPLEMENT_REFCOUNTING(SetDone);
};

class DeleteDone : public CefDeleteCookiesCallback {
 public:
  explicit DeleteDone(CefRefPtr<RecordingClient> log) : log_(log) {}
  void OnComplete(int deleted) override { log_->Record("deleted " + std::to_string(deleted)); }

 private:
  const CefRefPtr<RecordingClient> log_;

  IMPLEMENT_REFCOUNTING(DeleteDone);
};

// Ends the loop once everything that was ordered before has been carried out.
class QuitWhenFlushed : public CefCompletionCallback {
 public:
  void OnComplete() override { CefQuitMessageLoop(); }

 private:
  IMPLEMENT_REFCOUNTING(QuitWhenFlushed);
};

class CookieManagerTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    manager_ = CefRequestContext::GetGlobalContext()->GetCookieManager(nullptr);
    manager_->DeleteCookies("", "", nullptr);
  }

  bool Set(const std::string& url, const std::string& name, const std::string& value,
           const std::string& domain = {}, bool http_only = false, const std::string& path = "/") {
    CefCookie cookie;
    CefString(&cookie.name).FromString(name);
    CefString(&cookie.value).FromString(value);
    CefString(&cookie.domain).FromString(domain);
    CefString(&cookie.path).FromString(path);
    cookie.httponly = http_only;
    return manager_->SetCookie(url, cookie, new SetDone(client_));
  }

  void Settle() {
    manager_->FlushStore(new QuitWhenFlushed);
    RunLoop();
  }

  // What the jar holds for an address, HttpOnly cookies included.
  std::vector<std::string> Jar(const std::string& url) {
    CefRefPtr<RecordingClient> log = new RecordingClient;
    manager_->VisitUrlCookies(url, true, new Visitor(log));
    Settle();
    return log->trace();
  }

  CefRefPtr<CefCookieManager> manager_;
};

TEST_F(CookieManagerTest, PlantedCookiesAreInTheFirstRequestInCallOrder) {
  server_.Page("/page", "<title>end</title>");
  const std::string url = server_.Url("/page", "plant.test");
  Set(url, "first", "1");
  Set(url, "gone", "x");
  manager_->DeleteCookies(url, "gone", nullptr);
  Set(url, "first", "one=\"1\"");
  // Planted for an address of HTTPS it must reach plain HTTP as well; and in the last moment,
  // behind deletions that take a while.
  client_->on_created = [this, url](CefRefPtr<CefBrowser>) {
    for (int i = 0; i < 300; ++i) manager_->DeleteCookies(url, "none", nullptr);
    Set("https://plant.test/", "second", "2");
  };
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string&) {
    browser->GetHost()->CloseBrowser(true);
  };
  Run(url);
  const auto requests = server_.RequestsFor("/page");
  ASSERT_THAT(requests, SizeIs(1));
  EXPECT_EQ(requests[0].cookie, "first=one=\"1\"; second=2");
  EXPECT_EQ(client_->ResponsesFor("/page").at(0).cookie, requests[0].cookie);
}

TEST_F(CookieManagerTest, AddressesAndNamesAreChecked) {
  struct Case {
    const char* url;
    const char* name;
    bool returns;
    const char* completion;
  };
  const Case cases[] = {{"http://a.test/", "n", true, "stored"},
                        {"https://a.test/x", "n", true, "stored"},
                        {"", "n", false, nullptr},
                        {"a.test/x", "n", false, nullptr},
                        {"ftp://a.test/", "n", true, "not stored"},
                        {"http://a.test/", "n=m", true, "not stored"},
                        {"http://a.test/", "n;m", true, "not stored"}};
  for (const Case& c : cases) {
    client_ = new RecordingClient;
    EXPECT_EQ(Set(c.url, c.name, "v"), c.returns) << c.url << " " << c.name;
    // Never inside the call.
    EXPECT_THAT(client_->trace(), IsEmpty());
    Settle();
    if (c.completion) {
      EXPECT_THAT(client_->trace(), ElementsAre(c.completion)) << c.url << " " << c.name;
    } else {
      EXPECT_THAT(client_->trace(), IsEmpty()) << c.url;
    }
  }
}

TEST_F(CookieManagerTest, DeletionKeepsToItsScope) {
  const std::string url = "http://a.test/";
  const auto fill = [&] {
    manager_->DeleteCookies("", "", nullptr);
    Set(url, "host", "1");
    Set(url, "hidden", "2", "", true);
    Set(url, "wide", "3", "a.test");
    Set("http://b.test/", "host", "4");
    Settle();
    client_ = new RecordingClient;
  };
  struct Case {
    const char* url;
    const char* name;
    const char* completion;
    std::vector<std::string> left;
  };
  const Case cases[] = {
      {"http://a.test/", "host", "deleted 1", {"cookie 0/2 hidden=2", "cookie 1/2 wide=3"}},
      {"http://a.test/", "wide", "deleted 1", {"cookie 0/2 host=1", "cookie 1/2 hidden=2"}},
      {"http://a.test/", "", "deleted 2", {"cookie 0/1 wide=3"}},
      {"http://c.test/",
       "host",
       "deleted 0",
       {"cookie 0/3 host=1", "cookie 1/3 hidden=2", "cookie 2/3 wide=3"}},
      {"", "host", "deleted 4", {}}};
  for (const Case& c : cases) {
    fill();
    EXPECT_TRUE(manager_->DeleteCookies(c.url, c.name, new DeleteDone(client_)));
    Settle();
    EXPECT_THAT(client_->trace(), ElementsAre(c.completion)) << c.url << " " << c.name;
    EXPECT_THAT(Jar(url), ::testing::UnorderedElementsAreArray(c.left)) << c.url << " " << c.name;
  }
  EXPECT_FALSE(manager_->DeleteCookies("http://", "", nullptr));
}

// What a page has left in the jar: one that belongs to the page's site alone, and one whose name is
// no text.
TEST_F(CookieManagerTest, PagesCookiesAreReadAndAllCleared) {
  server_.Serve("/page", [](const LocalServer::Request&) {
    return LocalServer::Answer{
        200,
        "<title>end</title>",
        "text/html",
        {{"Set-Cookie", "apart=1; Secure; SameSite=None; Partitioned; Path=/; Max-Age=600"},
         {"Set-Cookie", "apart too=1; Secure; SameSite=None; Partitioned; Path=/; Max-Age=600"},
         {"Set-Cookie", "odd\xED\xA0\x80=\xED\xA0\x80; Max-Age=600"}}};
  });
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string&) {
    browser->GetHost()->CloseBrowser(true);
  };
  Run(server_.Url("/page", "localhost"));
  const std::string url = "https://localhost/";
  EXPECT_THAT(Jar(url), SizeIs(3));
  client_ = new RecordingClient;
  manager_->DeleteCookies(url, "apart", new DeleteDone(client_));
  Settle();
  EXPECT_THAT(Jar(url), SizeIs(2));
  manager_->DeleteCookies("", "", new DeleteDone(client_));
  Settle();
  EXPECT_THAT(client_->trace(), ElementsAre("deleted 1", "deleted 2"));
  EXPECT_THAT(Jar(url), IsEmpty());
}

TEST_F(CookieManagerTest, VisitorSeesMatchingCookiesAndMayRemoveOrStop) {
  const std::string url = "http://v.test/deep/page";
  Set(url, "short", "1");
  Set(url, "hidden", "2", "", true);
  Set(url, "long", "3", "", false, "/deep");
  Set("http://other.test/", "foreign", "4");
  Settle();

  client_ = new RecordingClient;
  EXPECT_TRUE(manager_->VisitUrlCookies(url, false, new Visitor(client_, "short")));
  Settle();
  // Longer paths come first, as they are sent.
  EXPECT_THAT(client_->trace(), ElementsAre("cookie 0/2 long=3", "cookie 1/2 short=1"));
  EXPECT_THAT(Jar(url), ElementsAre("cookie 0/2 long=3", "cookie 1/2 hidden=2"));

  client_ = new RecordingClient;
  EXPECT_TRUE(manager_->VisitUrlCookies(url, true, new Visitor(client_, "", 1)));
  Settle();
  EXPECT_THAT(client_->trace(), ElementsAre("cookie 0/2 long=3"));
  EXPECT_FALSE(manager_->VisitUrlCookies("", true, new Visitor(client_)));
  EXPECT_FALSE(manager_->VisitUrlCookies(url, true, nullptr));
}

}  // namespace
