#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <functional>

#import "GUI/cefBrowser/MacCefBrowserApplication.h"
#import "platform/AppKitSeam.h"
#import "platform/CatchThrown.h"
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

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(ApplicationTest, KnowsWhetherItIsSendingAnEvent) {
  int level = 0;
  EventWindow* window = MakeWindow(@"events");
  NSEvent* event = [NSEvent mouseEventWithType:NSLeftMouseUp
                                      location:NSZeroPoint
                                 modifierFlags:0
                                     timestamp:0
                                  windowNumber:[window windowNumber]
                                       context:nil
                                   eventNumber:0
                                    clickCount:1
                                      pressure:0];
  g_on_event = [&] {
    EXPECT_TRUE([App() isHandlingSendEvent]);
    if (level++ == 0) {
      [NSApp sendEvent:event];
      EXPECT_TRUE([App() isHandlingSendEvent]) << "a nested event has reset the outer one";
    }
    if (level > 2) [NSException raise:@"Test" format:@"from an event"];
  };

  [NSApp sendEvent:event];
  EXPECT_EQ(level, 2);
  EXPECT_FALSE([App() isHandlingSendEvent]);

  EXPECT_NE(CatchThrown([&] { [NSApp sendEvent:event]; }), nil);
  EXPECT_FALSE([App() isHandlingSendEvent]);
  [window close];
}

NSMenuItem* ItemWithAction(NSMenu* menu, SEL action) {
  for (int i = 0; i < [menu numberOfItems]; ++i) {
    NSMenuItem* item = (NSMenuItem*)[menu itemAtIndex:i];
    if (sel_isEqual([item action], action) && ![item hasSubmenu]) return item;
    if (NSMenuItem* found = ItemWithAction([item submenu], action)) return found;
  }
  return nil;
}

// Pages take these keys through the menu: without the items nobody can paste a password.
TEST_F(ApplicationTest, OffersEditingByKeyToWhateverHasTheFocus) {
  ASSERT_TRUE([[NSBundle mainBundle] loadNibNamed:@"MainMenu" owner:NSApp topLevelObjects:nullptr]);
  const std::pair<SEL, NSString*> items[] = {
    std::pair(@selector(cut:), @"x"),
    std::pair(@selector(copy:), @"c"),
    std::pair(@selector(paste:), @"v"),
    std::pair(@selector(selectAll:), @"a"),
    std::pair(@selector(performMiniaturize:), @"m"),
    std::pair(@selector(performClose:), @"w")
  };
  for (const auto& [action, key] : items) {
    NSMenuItem* item = ItemWithAction([NSApp mainMenu], action);
    ASSERT_NE(item, nil) << sel_getName(action);
    EXPECT_TRUE([[item keyEquivalent] isEqual:key]) << sel_getName(action);
    EXPECT_EQ([item target], nil) << sel_getName(action);
  }
}

}  // namespace
