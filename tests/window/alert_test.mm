#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include "GUI/cefBrowser/CertificateWarning.h"
#include "cef/chromium/base/MessageLoop.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "tests/support/TempDir.h"
#include "tests/window/WindowTest.h"

namespace {

using engine::MessageLoop;

constexpr char kCatalog[] = "\xEF\xBB\xBF"
                            "[179]\nValue = Continue(&C)\n[180]\nValue = &Cancel\n";
constexpr wchar_t kHeading[] = L"Corvane Secure";
constexpr wchar_t kDetails[] =
    L"The identity of https://gateway.example.com cannot be verified.\n\nError: "
    L"\tCERT_STATUS_COMMON_NAME_INVALID\n\t\tCERT_STATUS_AUTHORITY_INVALID\n\t\t\n"
    L"Do you want to continue to https://gateway.example.com?";

std::atomic<int> g_signal{0};

class AlertTest : public testing::Test {
 protected:
  void SetUp() override {
    StartTestApplication();
    ASSERT_TRUE(g_oResCatalog.load(WidePath(dir_.write("texts.txt", kCatalog)).c_str(), L""));
    MessageLoop::Get().Init();
    struct sigaction action = {};
    action.sa_handler = [](int number) { g_signal = number; };
    sigaction(SIGTERM, &action, nullptr);
    g_signal = 0;
  }

  static std::wstring WidePath(const std::string& path) { return {path.begin(), path.end()}; }

  // Shows the warning from a task, as the browser does, while `user` works on it from outside.
  // Afterwards the loop still runs tasks.
  bool Answer(const std::wstring& details, const std::function<void(const std::string&)>& user) {
    bool accepted = false;
    MessageLoop& loop = MessageLoop::Get();
    std::thread outside([&] {
      const std::string window = TestDisplay().WaitForWindow("^Alert$");
      EXPECT_FALSE(window.empty()) << "no alert appeared";
      EXPECT_EQ(TestDisplay().Xdotool({"windowfocus", "--sync", window}).status, 0);
      loop.PostTask([&] { EXPECT_TRUE(answered_) << "a task ran while the alert was open"; });
      user(window);
      EndIfUnanswered();
    });
    answered_ = false;
    g_signal = 0;
    loop.PostTask([&] {
      accepted = DisplayCertWarning(kHeading, details);
      EXPECT_EQ(g_signal, 0) << "a handler ran inside a task";
      answered_ = true;
    });
    loop.PostTask([&] {
      outside.join();
      loop.PostTask([&] { loop.Quit(); });
    });
    loop.Run();
    EXPECT_EQ([NSApp modalWindow], nil);
    return accepted;
  }

  // Without an answer the test fails instead of waiting for ever.
  void EndIfUnanswered() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!answered_ && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (answered_) return;
    ADD_FAILURE() << "the alert is still open";
    kill(getpid(), SIGTERM);
  }

  TempDir dir_;
  std::atomic<bool> answered_{false};
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(AlertTest, AcceptsOnlyTheFirstButton) {
  const struct {
    bool accepted;
    std::vector<std::string> answer;
  } cases[] = {
      // First: a later alert can be closed anyway.
      {false, {"wmctrl", "-c", "Alert"}},
      {true, {"xdotool", "key", "Return"}},
      {false, {"xdotool", "key", "--delay", "50", "Tab", "space"}},
      {false, {"xdotool", "key", "Escape"}},
  };
  for (const auto& c : cases) {
    const auto user = [&](const std::string&) { EXPECT_EQ(TestDisplay().Run(c.answer).status, 0); };
    EXPECT_EQ(Answer(kDetails, user), c.accepted) << c.answer.back();
  }
}

TEST_F(AlertTest, EndsAsRefusedByASignalOrAnUrgentTask) {
  EXPECT_FALSE(Answer(kDetails, [](const std::string&) { kill(getpid(), SIGTERM); }));
  EXPECT_EQ(g_signal, SIGTERM);
  EXPECT_FALSE(
      Answer(kDetails, [](const std::string&) { MessageLoop::Get().PostUrgentTask([] {}); }));
  const auto user = [](const std::string&) { TestDisplay().Xdotool({"key", "Return"}); };
  EXPECT_TRUE(Answer(kDetails, user)) << "the next one stays";
}

TEST_F(AlertTest, DoesNotStayWhileASignalIsHeld) {
  MessageLoop& loop = MessageLoop::Get();
  loop.HoldSignals();
  loop.PostTask([] { kill(getpid(), SIGTERM); });
  bool accepted = true;
  loop.PostTask([&] {
    accepted = DisplayCertWarning(kHeading, kDetails);
    EXPECT_EQ(g_signal, 0);
    loop.ReleaseSignals();
    loop.PostTask([&] { loop.Quit(); });
  });
  loop.Run();
  EXPECT_FALSE(accepted);
  EXPECT_EQ(g_signal, SIGTERM);
}

TEST_F(AlertTest, KeepsALongTextOnTheScreen) {
  std::wstring details;
  for (int line = 0; line < 80; ++line) details += L"line " + std::to_wstring(line) + L"\n";
  EXPECT_TRUE(Answer(details, [](const std::string& window) {
    const auto geometry = TestDisplay().Xdotool({"getwindowgeometry", "--shell", window});
    const size_t at = geometry.output.find("HEIGHT=");
    ASSERT_NE(at, std::string::npos) << geometry.output;
    EXPECT_LE(std::stoi(geometry.output.substr(at + 7)), 1024);
    TestDisplay().Xdotool({"key", "Return"});
  }));
}

TEST_F(AlertTest, RefusesTextsThatCannotBeShown) {
  EXPECT_FALSE(DisplayCertWarning(kHeading, std::wstring(1, wchar_t(0xD800))));
}

}  // namespace
