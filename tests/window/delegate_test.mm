#import <AppKit/AppKit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "GUI/cefBrowser/CefBrowserHandler.h"
#include "GUI/cefBrowser/CertificateWarning.h"
#include "GUI/cefBrowser/MacAppDelegate.h"
#import "GUI/cefBrowser/MacCefBrowserAppDelegate.h"
#import "GUI/cefBrowser/MacCefBrowserApplication.h"
#include "cef/chromium/base/MessageLoop.h"
#include "platform/Display.h"
#include "tests/support/FakeCef.h"
#include "tests/window/WindowTest.h"

namespace {

using engine::MessageLoop;

// Runs the loop until there is a delegate, ten seconds at most; without a display for a moment.
void TurnLoop() {
  MessageLoop& loop = MessageLoop::Get();
  loop.Init();
  int looks = 0;
  const std::function<void()> look = [&] {
    if (NSApp == nil || [NSApp delegate] != nil || ++looks == 200) {
      loop.Quit();
    } else {
      loop.PostDelayedTask(look, 50);
    }
  };
  loop.PostDelayedTask(look, 50);
  loop.Run();
}

class AppDelegate : public testing::Test {
 protected:
  ~AppDelegate() override { [pool_ drain]; }
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(AppDelegate, IsInstalledByTheFirstTurnOfTheLoop) {
  TestDisplay();
  ASSERT_EQ(MacCreateAppDelegate(), 0);
  ConnectDisplay();
  EXPECT_TRUE([NSApp isMemberOfClass:[MacCefBrowserApplication class]]);
  EXPECT_EQ([NSApp delegate], nil);
  TurnLoop();
  // There is no main menu beside this program; that is no reason to go without a delegate.
  MacCefBrowserAppDelegate* delegate = (MacCefBrowserAppDelegate*)[NSApp delegate];
  ASSERT_TRUE([delegate isMemberOfClass:[MacCefBrowserAppDelegate class]]);
  EXPECT_EQ([delegate applicationShouldTerminate:NSApp], NSTerminateNow);
  // No browser, no handler: a quit request does nothing, and the process goes on.
  [NSApp terminate:nil];
}

TEST_F(AppDelegate, StartsWithoutEveryDecoderOfImageMagick) {
  StartTestApplication();
  std::ifstream file("/proc/self/maps");
  const std::string maps((std::istreambuf_iterator<char>(file)), {});
  EXPECT_NE(maps.find("libgnustep-gui"), std::string::npos);
  EXPECT_EQ(maps.find("/coders/"), std::string::npos);
}

TEST_F(AppDelegate, AsksTheBrowsersToCloseOnlyOnce) {
  StartTestApplication();
  MacCefBrowserAppDelegate* delegate = [[MacCefBrowserAppDelegate alloc] init];
  [delegate createApplication:nil];
  ASSERT_EQ([NSApp delegate], delegate);

  FakeCef cef;
  CefRefPtr<EmbBrowserHandler> handler = new EmbBrowserHandler(false, nullptr);
  handler->m_BrowserList_.push_back(cef.MakeBrowser());
  handler->m_BrowserList_.push_back(cef.MakeBrowser());
  [NSApp terminate:nil];
  EXPECT_THAT(
      cef.Trace({"CloseBrowser", "QuitMessageLoop"}),
      testing::ElementsAre("CloseBrowser(id=1, force=false)", "CloseBrowser(id=2, force=false)"));
  cef.ClearTrace();
  handler->m_IsClosing_ = true;
  [NSApp terminate:nil];
  EXPECT_TRUE(cef.Trace({"CloseBrowser", "QuitMessageLoop"}).empty());
  handler->m_BrowserList_.clear();
  // What belongs to the IO thread is released there.
  handler = nullptr;
  cef.RunTasks(TID_IO);
}

}  // namespace
