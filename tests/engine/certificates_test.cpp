// Pages behind a bad certificate.

#include "tools/gateway/Certificates.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <thread>

#include "tests/engine/EngineTest.h"
#include "tests/support/TrustStore.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

// An HTTPS server whose certificate has a fault. Without an authority it comes from one that nobody
// trusts.
class FaultyServer {
 public:
  explicit FaultyServer(CertificateKind kind, const TestAuthority& authority = TestAuthority()) {
    const Identity identity = authority.Issue(kind, {"bad.test"});
    server =
        std::make_unique<LocalServer>(folder_.write("certificate.pem", identity.CertificatePem()),
                                      folder_.write("key.pem", identity.KeyPem()));
  }
  std::unique_ptr<LocalServer> server;

 private:
  TempDir folder_;
};

class CertificatesTest : public EngineTest {
 protected:
  // An authority that this process's Chromium trusts.
  static const TestAuthority& Trusted() {
    static const TestAuthority authority("Trusted Test Authority");
    return authority;
  }
  void SetUp() override {
    static const TempDir home;
    static const bool trusted = [] {
      TrustAuthority(home.path(), Trusted().certificate_pem());
      return setenv("HOME", home.path().c_str(), 1) == 0;
    }();
    ASSERT_TRUE(trusted);
    EngineTest::SetUp();
  }
  void CloseOnEnd() {
    client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string& title) {
      if (title == "end") browser->GetHost()->CloseBrowser(true);
    };
    client_->on_load_error = [](CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame>,
                                const std::string&) { browser->GetHost()->CloseBrowser(true); };
  }
  std::vector<std::string> Questions() const {
    std::vector<std::string> lines;
    for (const std::string& line : client_->trace()) {
      if (line.rfind("certificate", 0) == 0) lines.push_back(line);
    }
    return lines;
  }
};

TEST_F(CertificatesTest, AllowedPageLoadsAndIsNotAskedForAgain) {
  FaultyServer faulty(CertificateKind::kUnknownAuthority);
  LocalServer& bad = *faulty.server;
  // The POST from another site arrives whole, once it is allowed.
  server_.Page("/start", "<form method=post action='" + bad.Url("/first", "bad.test") +
                             "'><input name=a value=b></form>"
                             "<script>document.forms[0].submit()</script>");
  bad.Page("/first", "<script>fetch('/sub').then(() => { location = '/second'; })</script>");
  bad.Page("/second", "<title>end</title>");
  CloseOnEnd();
  client_->on_certificate_error = [](CefRefPtr<CefBrowser>,
                                     CefRefPtr<CefRequestCallback> callback) {
    callback->Continue(true);
    // Too late to change anything.
    callback->Continue(false);
    return true;
  };
  Run(server_.Url("/start"));
  EXPECT_THAT(Questions(), ElementsAre("certificate -202 bits 4 /first"));
  ASSERT_THAT(bad.RequestsFor("/first"), SizeIs(1));
  EXPECT_EQ(bad.RequestsFor("/first")[0].body, "a=b");
  EXPECT_THAT(client_->trace(), Contains("response 200 /second"));
}

TEST_F(CertificatesTest, EveryWayToRefuseCancelsTheNavigation) {
  struct Case {
    const char* name;
    std::function<bool(CefRefPtr<CefBrowser>, CefRefPtr<CefRequestCallback>)> answer;
  };
  const Case cases[] = {
      {"continue false",
       [](CefRefPtr<CefBrowser>, CefRefPtr<CefRequestCallback> callback) {
         callback->Continue(false);
         return true;
       }},
      {"cancel, later",
       [](CefRefPtr<CefBrowser>, CefRefPtr<CefRequestCallback> callback) {
         Post(
             TID_UI, [callback] { callback->Cancel(); }, 100);
         return true;
       }},
      {"released unused",
       [](CefRefPtr<CefBrowser>, CefRefPtr<CefRequestCallback>) { return true; }},
      {"not handled", [](CefRefPtr<CefBrowser>, CefRefPtr<CefRequestCallback>) { return false; }}};
  FaultyServer faulty(CertificateKind::kWrongHostUnknownAuthority);
  for (const Case& c : cases) {
    client_ = new RecordingClient;
    CloseOnEnd();
    client_->on_certificate_error = c.answer;
    Run(faulty.server->Url("/page", "bad.test"));
    // Both faults show.
    EXPECT_THAT(Questions(), ElementsAre("certificate -202 bits 5 /page")) << c.name;
    EXPECT_THAT(client_->trace(), Contains("load-error -3 net::ERR_ABORTED /page")) << c.name;
  }
  EXPECT_THAT(faulty.server->Requests(), IsEmpty());
}

TEST_F(CertificatesTest, EachFaultHasItsErrorAndBitsAlsoBehindARedirect) {
  struct Case {
    CertificateKind kind;
    std::vector<std::string> questions;
  };
  for (const Case& c : std::initializer_list<Case>{
           {CertificateKind::kGood, {}},
           {CertificateKind::kWrongHost, {"certificate -200 bits 1 /page"}},
           {CertificateKind::kExpired, {"certificate -201 bits 2 /page"}},
           {CertificateKind::kUnknownAuthority, {"certificate -202 bits 4 /page"}},
           {CertificateKind::kWrongHostUnknownAuthority, {"certificate -202 bits 5 /page"}}}) {
    SCOPED_TRACE(CertificateKindName(c.kind));
    FaultyServer faulty(c.kind, Trusted());
    faulty.server->Page("/page", "<title>end</title>");
    server_.Redirect("/start", faulty.server->Url("/page", "bad.test"));
    client_ = new RecordingClient;
    CloseOnEnd();
    Run(server_.Url("/start"));
    EXPECT_EQ(Questions(), c.questions);
    EXPECT_EQ(faulty.server->Requests().size(), c.questions.empty() ? 1u : 0u);
  }
}

TEST_F(CertificatesTest, OtherRequestsFailWithoutAQuestion) {
  FaultyServer faulty(CertificateKind::kUnknownAuthority);
  const std::string bad = faulty.server->Url("/x", "parts.test");
  server_.Page("/page", "<iframe src='" + bad + "frame'></iframe><script>fetch('" + bad +
                            "fetch', {mode: 'no-cors'}).catch(() => {"
                            " document.title = 'end'; })</script>");
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string& title) {
    if (title == "end") browser->GetHost()->CloseBrowser(true);
  };
  Run(server_.Url("/page"));
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(client_->trace(), Contains("title end"));
  EXPECT_THAT(faulty.server->Requests(), IsEmpty());
}

// The question was asked all the same, and the run stood there until somebody answered.
TEST_F(CertificatesTest, NobodyIsAskedOnceTheWindowIsBeingClosed) {
  FaultyServer faulty(CertificateKind::kUnknownAuthority);
  client_->on_before_load = [](CefRefPtr<CefBrowser> browser, const std::string&) {
    // Meanwhile the question joins the queue of the UI thread.
    Post(TID_UI, [browser] {
      std::this_thread::sleep_for(std::chrono::milliseconds(500));
      browser->GetHost()->CloseBrowser(true);
    });
    return RV_CONTINUE;
  };
  Run(faulty.server->Url("/page", "late.test"));
  EXPECT_THAT(Questions(), IsEmpty());
}

// What a page gave up must not make a later request of the same address look like a page.
TEST_F(CertificatesTest, APageThatWasGivenUpIsNotAskedAboutAgain) {
  FaultyServer faulty(CertificateKind::kUnknownAuthority);
  const std::string bad = faulty.server->Url("/page", "bad.test");
  // The page asks how far things are, since a page that is being left runs no scripts of others.
  server_.Page("/start",
               "<script>async function when(step) {"
               "  while (await (await fetch('/step')).text() !== step);"
               "} onload = async () => {"
               "  location = '" +
                   bad +
                   "'; await when('asked'); stop(); await when('given up');"
                   "  fetch('" +
                   bad +
                   "', {mode: 'no-cors'}).catch(() => { document.title = 'end'; });"
                   "}</script>");
  std::atomic<const char*> step{"loading"};
  server_.Serve("/step", [&step](const LocalServer::Request&) {
    return LocalServer::Answer{200, step.load(), "text/plain", {}};
  });
  CefRefPtr<CefRequestCallback> kept;
  client_->on_certificate_error = [&](CefRefPtr<CefBrowser>,
                                      CefRefPtr<CefRequestCallback> callback) {
    kept = callback;
    step = "asked";
    return true;
  };
  client_->on_load_error = [&](CefRefPtr<CefBrowser>, CefRefPtr<CefFrame>, const std::string&) {
    kept->Continue(false);
    step = "given up";
  };
  client_->on_title = [](CefRefPtr<CefBrowser> browser, const std::string& title) {
    if (title == "end") browser->GetHost()->CloseBrowser(true);
  };
  Run(server_.Url("/start"));
  EXPECT_THAT(Questions(), ElementsAre("certificate -202 bits 4 /page"));
  EXPECT_THAT(client_->trace(), Contains("title end"));
}

// On a file system that has no FIFOs there is no network log, and no certificate is known.
class NoNetworkLogTest : public CertificatesTest {
 protected:
  void SetUp() override {
    // The only way of this test program into the kernel's mkfifo is taken away.
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_mknodat, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {std::size(filter), filter};
    ASSERT_EQ(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
    CertificatesTest::SetUp();
  }
};

TEST_F(NoNetworkLogTest, ConsentHoldsForTheHostAndTheError) {
  FaultyServer faulty(CertificateKind::kUnknownAuthority);
  faulty.server->Page("/first",
                      "<script>fetch('/sub').then(() => { location = '/second'; })</script>");
  faulty.server->Page("/second", "<title>end</title>");
  CloseOnEnd();
  client_->on_certificate_error = [](CefRefPtr<CefBrowser>,
                                     CefRefPtr<CefRequestCallback> callback) {
    callback->Continue(true);
    return true;
  };
  Run(faulty.server->Url("/first", "bad.test"));
  EXPECT_THAT(Questions(), ElementsAre("certificate -202 bits 4 /first"));
  EXPECT_THAT(client_->trace(), Contains("response 200 /second"));
}

}  // namespace
