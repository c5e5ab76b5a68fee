#include <sys/ipc.h>
#include <sys/shm.h>

#include <csignal>
#include <cstring>

#include "GUI/cefBrowser/CefBrowserClient.h"
#include "GUI/cefBrowser/ReturnChannel.h"
#include "tests/session/SessionTest.h"
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
  CefRefPtr<FakeBrowser> browser = cef.MakeBrowser(session->m_handler.get());
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

// What a reader finds in the segment of a folder; removes the segment.
std::string TakeSegment(const std::string& folder) {
  const int id = shmget(ftok(folder.c_str(), 'R'), 0, 0);
  if (id < 0) return "(no segment)";
  auto* text = static_cast<const char*>(shmat(id, nullptr, SHM_RDONLY));
  std::string content(text, strnlen(text, 4096));
  shmdt(text);
  shmctl(id, IPC_RMID, nullptr);
  return content;
}

TEST(ReturnChannel, NeverWritesMoreThanTheSegmentHolds) {
  const std::string frame =
      R"({"postauthcookie":"","samlidpcookies":"","samlidplogoutrequesturl":"","samlslostate":0})";
  struct Case {
    size_t post_auth;
    size_t idp;
    std::string expected;
  };
  const size_t room = 4096 - frame.size();
  auto json = [](size_t post_auth, size_t idp) {
    return R"({"postauthcookie":")" + std::string(post_auth, 'p') + R"(","samlidpcookies":")" +
           std::string(idp, 'i') + R"(","samlidplogoutrequesturl":"","samlslostate":0})";
  };
  for (const Case& c : std::initializer_list<Case>{{10, room - 10, json(10, room - 10)},
                                                   {10, room - 9, json(10, 0)},
                                                   {room, 6000, json(room, 0)},
                                                   {room + 1, 6000, ""}}) {
    SCOPED_TRACE(std::to_string(c.post_auth) + " and " + std::to_string(c.idp));
    TempDir folder;
    EmbBrowserReturnData data;
    data.postAuthCookie.assign(c.post_auth, 'p');
    data.samlIdpCookies.assign(c.idp, 'i');
    EXPECT_TRUE(WriteReturnData(data, folder.path()));
    EXPECT_EQ(TakeSegment(folder.path()), c.expected);
  }
  EXPECT_FALSE(WriteReturnData(EmbBrowserReturnData(), "/nonexistent/"));
}

}  // namespace
