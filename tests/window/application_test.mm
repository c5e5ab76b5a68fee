#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#import "GUI/cefBrowser/MacCefBrowserAppDelegate.h"
#import "GUI/cefBrowser/MacCefBrowserApplication.h"
#import "platform/AppKitSeam.h"
#include "platform/RaiseWindow.h"
#import "platform/guard.h"
#include "tests/window/WindowTest.h"

namespace {
std::function<void()> g_on_event;
}

// A window that does what a test says when an event reaches it.
@interface EventWindow : NSWindow
@end

@implementation EventWindow
- (void)sendEvent:(NSEvent*)event {
  (void)event;
  g_on_event();
}
@end

// Stands where the product's delegate is.
@interface QuitRecorder : NSObject <NSApplicationDelegate> {
 @public
  id sender;
}
@end

@implementation QuitRecorder
- (void)tryToTerminateApplication:(id)from {
  sender = from;
}
@end

namespace {

MacCefBrowserApplication* App() { return (MacCefBrowserApplication*)NSApp; }

class ApplicationTest : public testing::Test {
 protected:
  void SetUp() override { StartTestApplication(); }

  EventWindow* MakeWindow(NSString* title) {
    EventWindow* window = [[EventWindow alloc] initWithContentRect:NSMakeRect(10, 10, 200, 100)
                                                         styleMask:NSTitledWindowMask
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO];
    [window setTitle:title];
    return window;
  }

  static NSEvent* EventFor(NSWindow* window) {
    return [NSEvent keyEventWithType:NSKeyUp
                            location:NSZeroPoint
                       modifierFlags:0
                           timestamp:0
                        windowNumber:[window windowNumber]
                             context:nil
                          characters:@"a"
         charactersIgnoringModifiers:@"a"
                           isARepeat:NO
                             keyCode:0];
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(ApplicationTest, KnowsWhetherItIsSendingAnEvent) {
  int level = 0;
  bool raise = false;
  EventWindow* window = MakeWindow(@"events");
  g_on_event = [&] {
    EXPECT_TRUE([App() isHandlingSendEvent]);
    if (level++ == 0) {
      [NSApp sendEvent:EventFor(window)];
      EXPECT_TRUE([App() isHandlingSendEvent]) << "a nested event has reset the outer one";
    }
    if (raise) [NSException raise:@"Test" format:@"from an event"];
  };

  [NSApp sendEvent:EventFor(window)];
  EXPECT_EQ(level, 2);
  EXPECT_FALSE([App() isHandlingSendEvent]);

  raise = true;
  id thrown = CatchThrown([&] { [NSApp sendEvent:EventFor(window)]; });
  EXPECT_NE(thrown, nil);
  EXPECT_FALSE([App() isHandlingSendEvent]);
  [window close];
}

TEST_F(ApplicationTest, ForwardsTerminateToTheDelegate) {
  [NSApp setDelegate:nil];
  [NSApp terminate:NSApp];

  QuitRecorder* recorder = [[QuitRecorder alloc] init];
  [NSApp setDelegate:recorder];
  [NSApp terminate:recorder];
  EXPECT_EQ(recorder->sender, recorder);
  [NSApp setDelegate:nil];
  [recorder release];
}

TEST_F(ApplicationTest, LoadsTheMainMenuWhenThereIsOne) {
  NSBundle* bundle = [NSBundle mainBundle];
  EXPECT_TRUE([bundle loadNibNamed:@"MainMenu" owner:NSApp topLevelObjects:nullptr]);
  EXPECT_FALSE([bundle loadNibNamed:@"NoSuchMenu" owner:NSApp topLevelObjects:nullptr]);

  QuitRecorder* recorder = [[QuitRecorder alloc] init];
  [NSApp setDelegate:recorder];
  NSMenuItem* item = [[NSApp mainMenu] itemAtIndex:0];
  ASSERT_NE([item submenu], nil);
  [[item submenu] performActionForItemAtIndex:[[item submenu] numberOfItems] - 1];
  EXPECT_NE(recorder->sender, nil) << "the Quit item did not reach the delegate";
  [NSApp setDelegate:nil];
  [recorder release];
}

// The window manager lists windows in stacking order, the topmost last.
unsigned long Topmost() {
  const auto root = TestDisplay().Run({"xprop", "-root", "-notype", "_NET_CLIENT_LIST_STACKING"});
  const size_t last = root.output.rfind("0x");
  return last == std::string::npos ? 0 : std::stoul(root.output.substr(last), nullptr, 16);
}

TEST_F(ApplicationTest, RaisesAWindowAndIgnoresWhatIsNone) {
  g_on_event = [] {};
  EventWindow* back = MakeWindow(@"back");
  [back orderFront:nil];
  EventWindow* front = MakeWindow(@"front");
  [front orderFront:nil];
  const std::string id = TestDisplay().WaitForWindow("^back$");
  ASSERT_FALSE(id.empty());
  ASSERT_FALSE(TestDisplay().WaitForWindow("^front$").empty());

  RaiseWindow(nullptr);
  RaiseWindow(reinterpret_cast<void*>(0x7fffffff));
  RaiseWindow(reinterpret_cast<void*>(std::stoul(id)));
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (Topmost() != std::stoul(id) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(Topmost(), std::stoul(id));
  [back close];
  [front close];
}

TEST(AppKitProcess, KeepsItsNameAndItsHandlers) {
  const auto handler = [](int) {};
  signal(SIGTERM, handler);
  signal(SIGINT, handler);
  StartTestApplication();
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  EXPECT_STREQ([[[NSProcessInfo processInfo] processName] UTF8String], "EmbeddedBrowser");
  EXPECT_EQ([[[NSProcessInfo processInfo] arguments] count], 1u);
  EXPECT_EQ(NSGetUncaughtExceptionHandler(), nullptr);
  for (int number : {SIGTERM, SIGINT}) {
    struct sigaction action;
    sigaction(number, nullptr, &action);
    EXPECT_EQ(action.sa_handler, static_cast<void (*)(int)>(handler)) << number;
  }
  [pool drain];
}

}  // namespace
