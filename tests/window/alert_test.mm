#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSDisplayServer.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#import <objc/runtime.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
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

// Last: it makes macros of common words.
#include <X11/Xlib.h>

namespace {

using engine::MessageLoop;
using testing::HasSubstr;
using User = std::function<void(const std::string& window)>;

constexpr char kCatalog[] = "\xEF\xBB\xBF"
                            "[179]\nValue = Continue(&C)\n[180]\nValue = Ca&ncel\n";
constexpr wchar_t kHeading[] = L"Corvane Secure";
constexpr wchar_t kDetails[] =
    L"The identity of https://gateway.example.com cannot be verified.\n\nError: "
    L"\tCERT_STATUS_COMMON_NAME_INVALID\n\t\tCERT_STATUS_AUTHORITY_INVALID\n\t\t\n"
    L"Do you want to continue to https://gateway.example.com?";

std::atomic<int> g_signal{0};

template <class Condition>
bool Within10s(Condition holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!holds() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return holds();
}

// With a window manager and without one.
class AlertTest : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    StartTestApplication(GetParam());
    if (TestDisplay().managed() != GetParam()) GTEST_SKIP() << "one display a process";
    // The program has one, which must not show as a bar in the dialog.
    [NSApp setMainMenu:[[[NSMenu alloc] initWithTitle:@"menu"] autorelease]];
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
  bool Answer(const std::wstring& details, const User& user) {
    bool accepted = false;
    MessageLoop& loop = MessageLoop::Get();
    std::thread outside([&] {
      const std::string window = TestDisplay().WaitForWindow("^Corvane Secure$");
      EXPECT_FALSE(window.empty()) << "no alert appeared";
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

  struct Place {
    int x = 0, y = 0, width = 0, height = 0;
  };
  static Place PlaceOf(const std::string& window) {
    const std::string output =
        TestDisplay().Xdotool({"getwindowgeometry", "--shell", window}).output;
    Place place;
    const int found = sscanf(output.c_str(), "WINDOW=%*d\nX=%d\nY=%d\nWIDTH=%d\nHEIGHT=%d",
                             &place.x, &place.y, &place.width, &place.height);
    EXPECT_EQ(found, 4) << output;
    return place;
  }

  // A drawn window has many colours, one that nobody has drawn a single one; likewise where another
  // window covers it.
  static void ExpectDrawn(const std::string& window) {
    std::string colors;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    do {
      colors = TestDisplay().Run({"import", "-window", window, "-format", "%k", "info:"}).output;
    } while (atoi(colors.c_str()) < 50 && std::chrono::steady_clock::now() < end);
    EXPECT_GE(atoi(colors.c_str()), 50) << "blank";
  }

  // Without an answer the test fails instead of waiting for ever.
  void EndIfUnanswered() {
    if (Within10s([this] { return answered_.load(); })) return;
    ADD_FAILURE() << "the alert is still open";
    kill(getpid(), SIGTERM);
  }

  TempDir dir_;
  std::atomic<bool> answered_{false};
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

// A key that comes before the window has been drawn would not show that nothing was to be seen.
TEST_P(AlertTest, IsDrawnAndAcceptsOnlyTheFirstButton) {
  const struct {
    bool accepted;
    std::vector<std::string> answer;
  } cases[] = {
      {false, {"xdotool", "key", "Return"}},
      {false, {"xdotool", "key", "Escape"}},
      {true, {"xdotool", "key", "alt+c"}},
      {false, {"xdotool", "key", "alt+n"}},
      {false, {"xdotool", "key", "space"}},
      {true, {"xdotool", "key", "--delay", "50", "Tab", "space"}},
      {false, {"xdotool", "key", "--delay", "50", "Tab", "Return"}},
      {true, {"xdotool", "mousemove", "--window", "ID", "470", "220", "click", "1"}},
      {false, {"wmctrl", "-i", "-c", "ID"}},
  };
  for (const auto& c : cases) {
    if (!GetParam() && c.answer[0] == "wmctrl") continue;
    const auto user = [&](const std::string& window) {
      ExpectDrawn(window);
      std::vector<std::string> answer = c.answer;
      std::replace(answer.begin(), answer.end(), std::string("ID"), window);
      EXPECT_EQ(TestDisplay().Run(answer).status, 0);
    };
    EXPECT_EQ(Answer(kDetails, user), c.accepted) << testing::PrintToString(c.answer);
  }
}

// Another window comes over all others and goes again.
void CoverAndUncover() {
  Display* display = XOpenDisplay(nullptr);
  XSetWindowAttributes cover = {};
  cover.override_redirect = True;
  const Window above =
      XCreateWindow(display, DefaultRootWindow(display), 0, 0, 1280, 1024, 0, CopyFromParent,
                    InputOutput, CopyFromParent, CWOverrideRedirect, &cover);
  XMapRaised(display, above);
  XSync(display, False);
  XUnmapWindow(display, above);
  XSync(display, False);
  XCloseDisplay(display);
}

using Flush = void (*)(id, SEL);
Flush g_flush;
std::atomic<int> g_covers{0};

// The server's word of a second uncovering comes in together with an answer to AppKit.
void FlushAndCover(id window, SEL name) {
  g_flush(window, name);
  if (g_covers == 0) return;
  CoverAndUncover();
  XSync(static_cast<Display*>([GSCurrentServer() serverDevice]), False);
  --g_covers;
}

// Function types that differ on purpose.
template <class To, class From>
To Cast(From function) {
  return reinterpret_cast<To>(reinterpret_cast<void (*)()>(function));
}

// It stayed blank until the mouse was moved: AppKit drew on the way into its wait for events, which
// what has already come in does not end.
TEST_P(AlertTest, IsDrawnWhenItIsUncoveredWhileItIsBeingDrawn) {
  const Method flush = class_getInstanceMethod([NSWindow class], @selector(flushWindow));
  g_flush = Cast<Flush>(method_setImplementation(flush, Cast<IMP>(FlushAndCover)));
  Answer(kDetails, [&](const std::string& window) {
    ExpectDrawn(window);
    for (int i = 0; i < 5; ++i) {
      g_covers = 1;
      CoverAndUncover();
      EXPECT_TRUE(Within10s([] { return g_covers == 0; })) << "never drawn";
      ExpectDrawn(window);
    }
    TestDisplay().Xdotool({"key", "Escape"});
  });
  method_setImplementation(flush, Cast<IMP>(g_flush));
}

TEST_P(AlertTest, EndsAsRefusedByASignalOrAnUrgentTask) {
  EXPECT_FALSE(Answer(kDetails, [](const std::string&) { kill(getpid(), SIGTERM); }));
  EXPECT_EQ(g_signal, SIGTERM);
  EXPECT_FALSE(
      Answer(kDetails, [](const std::string&) { MessageLoop::Get().PostUrgentTask([] {}); }));
  const auto user = [](const std::string&) { TestDisplay().Xdotool({"key", "alt+c"}); };
  EXPECT_TRUE(Answer(kDetails, user)) << "the next one stays";
}

TEST_P(AlertTest, DoesNotStayWhileASignalIsHeld) {
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

// A window of a child of this process stands for the browser's.
TEST_P(AlertTest, IsADialogOfTheBrowsersWindow) {
  Subprocess::Command command;
  command.arguments = {"xev", "-name", "browser", "-geometry", "600x500+600+100"};
  Subprocess browser(command);
  const std::string parent = TestDisplay().WaitForWindow("^browser$");
  const std::string process = std::to_string(browser.pid());
  TestDisplay().Run(
      {"xprop", "-id", parent, "-f", "_NET_WM_PID", "32c", "-set", "_NET_WM_PID", process});
  const User user = [&](const std::string& window) {
    const std::string of_window = TestDisplay().Run({"xprop", "-id", window}).output;
    char transient[64];
    snprintf(transient, sizeof transient, "WM_TRANSIENT_FOR(WINDOW): window id # 0x%lx\n",
             std::stoul(parent));
    const char* const written[] = {transient, "(ATOM) = _NET_WM_WINDOW_TYPE_DIALOG\n",
                                   "STATE_MODAL",
                                   "(STRING) = \"embedded-browser\", \"CorvaneSecure\"\n"};
    for (const char* text : written) {
      EXPECT_THAT(of_window, HasSubstr(text));
    }
    const Place place = PlaceOf(window), around = PlaceOf(parent);
    EXPECT_NEAR(place.x + place.width / 2, around.x + around.width / 2, 20);
    EXPECT_NEAR(place.y + place.height / 2, around.y + around.height / 2, 30);
    // A click beside it leaves it where it is: above.
    TestDisplay().Xdotool({"mousemove", "--window", parent, "20", "20", "click", "1"});
    ExpectDrawn(window);
    TestDisplay().Xdotool({"key", "Escape"});
  };
  EXPECT_FALSE(Answer(kDetails, user));
}

// It would take what the user types there for its answer.
TEST_P(AlertTest, AsksForAttentionOnlyWhileTheUserIsElsewhere) {
  if (!GetParam()) GTEST_SKIP() << "without a window manager nobody knows where the user is";
  Subprocess::Command command;
  command.arguments = {"xev", "-name", "elsewhere"};
  Subprocess program(command);
  const std::string elsewhere = TestDisplay().WaitForWindow("^elsewhere$");
  TestDisplay().Xdotool({"windowactivate", "--sync", elsewhere});
  EXPECT_TRUE(Answer(kDetails, [&](const std::string& window) {
    ExpectDrawn(window);
    EXPECT_THAT(TestDisplay().Run({"xprop", "-id", window, "_NET_WM_STATE"}).output,
                HasSubstr("_NET_WM_STATE_DEMANDS_ATTENTION"));
    EXPECT_EQ(TestDisplay().Xdotool({"getwindowfocus"}).output, elsewhere + "\n");
    TestDisplay().Xdotool({"key", "Return", "Escape"});
    TestDisplay().Xdotool({"windowactivate", "--sync", window, "key", "alt+c"});
  }));
}

TEST_P(AlertTest, LooksLikeTheDesktopAndFitsOnTheScreen) {
  std::wstring lines;
  for (int line = 0; line < 80; ++line) lines += L"line " + std::to_wstring(line) + L"\n";
  const struct {
    int dpi;
    const char* theme;
    std::wstring text;
    int width, most_light;  // of the colour in the corner
  } cases[] = {{96, "Adwaita", kDetails, 542, 255},
               {144, "Yaru-dark", kDetails, 813, 64},
               {192, "Adwaita:dark", lines, 1084, 64}};
  for (const auto& c : cases) {
    setenv("GTK_THEME", c.theme, 1);
    const std::string resources = "Xft.dpi:\t" + std::to_string(c.dpi);
    TestDisplay().Run(
        {"xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER", resources});
    Answer(c.text, [&](const std::string& window) {
      const Place place = PlaceOf(window);
      EXPECT_EQ(place.width, c.width);
      EXPECT_LE(place.height, 1024);
      ExpectDrawn(window);
      const std::string light =
          TestDisplay()
              .Run({"convert", "x:" + window, "-format", "%[fx:round(255*p{9,9}.g)]", "info:"})
              .output;
      EXPECT_LE(std::stoi(light), c.most_light);
      EXPECT_GE(std::stoi(light), c.most_light - 64);
      TestDisplay().Xdotool({"key", "Escape"});
    });
  }
  unsetenv("GTK_THEME");
}

INSTANTIATE_TEST_SUITE_P(All, AlertTest, testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Managed" : "Bare"; });

TEST_P(AlertTest, RefusesTextsThatCannotBeShown) {
  EXPECT_FALSE(DisplayCertWarning(kHeading, std::wstring(1, wchar_t(0xD800))));
}

}  // namespace
