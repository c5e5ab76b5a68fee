#include <csignal>

#include "GUI/cefBrowser/CefBrowserClient.h"
#include "GUI/cefBrowser/ReturnChannel.h"
#include "tests/session/SessionTest.h"
#include "tests/support/Segment.h"
#include "tests/support/TempDir.h"

namespace {

class Driver : public SessionTest {
 protected:
  ~Driver() override { CefBrowserClient::m_pBrowserCtrl.reset(); }
};

TEST_F(Driver, ActsOnItsFourSignalsOnly) {
  CefBrowserClient::getInstance(SAML_LOGIN);
  auto* session = CefBrowserClient::m_pBrowserCtrl.get();
  session->OnContextInitialized();
  CefRefPtr<FakeBrowser> browser = cef.MakeBrowser();
  session->m_handler->OnAfterCreated(browser.get());
  for (int number = -1; number <= 64; ++number) {
    cef.ClearTrace();
    CefBrowserClient::m_bsession_timed_out = false;
    handleSignal(number);
    const bool acts =
        number == SIGHUP || number == SIGINT || number == SIGQUIT || number == SIGTERM;
    EXPECT_EQ(cef.Trace({"CloseBrowser"}).size(), acts ? 1u : 0u) << number;
    EXPECT_EQ(CefBrowserClient::m_bsession_timed_out, acts) << number;
  }
  session->m_handler->m_BrowserList_.clear();
}

TEST(ReturnChannel, NeverWritesMoreThanTheSegmentHolds) {
  const auto json = [](size_t post_auth, size_t idp) {
    return R"({"postauthcookie":")" + std::string(post_auth, 'p') + R"(","samlidpcookies":")" +
           std::string(idp, 'i') + R"(","samlidplogoutrequesturl":"","samlslostate":0})";
  };
  const size_t room = 4096 - json(0, 0).size();
  const struct {
    size_t post_auth, idp;
    std::string expected;
  } cases[] = {{10, room - 10, json(10, room - 10)},
               {10, room - 9, json(10, 0)},
               {room, 6000, json(room, 0)},
               {room + 1, 6000, ""}};
  for (const auto& c : cases) {
    const TempDir folder;
    EmbBrowserReturnData data;
    data.postAuthCookie.assign(c.post_auth, 'p');
    data.samlIdpCookies.assign(c.idp, 'i');
    EXPECT_TRUE(WriteReturnData(data, folder.path()));
    EXPECT_EQ(TakeSegment(folder.path()), c.expected) << c.post_auth << " and " << c.idp;
  }
  EXPECT_FALSE(WriteReturnData(EmbBrowserReturnData(), "/nonexistent/"));
}

}  // namespace
