#import "platform/RunAlert.h"

#import <GNUstepGUI/GSDisplayServer.h>
#include <X11/Xatom.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/DesktopLook.h"
#include "platform/DialogWindow.h"
#import "platform/QuestionView.h"
#include "platform/XWindows.h"

// The dialog's window. It draws what an event has changed before the next one is read, and never on
// the way into the wait for one: drawing asks the X server for answers, and what comes in together
// with an answer does not end the wait. A window that had just been uncovered stayed blank until
// the mouse was moved.
@interface QuestionWindow : NSWindow {
  Display* display_;
  Window browser_;
  BOOL asking_, keep_out_;
  int looks_;
}
- (id)initWithAlert:(NSAlert*)alert;
- (NSInteger)ask;
@end

namespace {

constexpr int kIconSizes[] = {16, 32, 48, 128, 256};
constexpr double kAroundDialog = 16;

// Chromium shows its window in its own time, now and then after its first question.
constexpr double kLookEvery = 0.25;
constexpr int kMostLooks = 40;

NSString* IconFile(int size) {
  return [[NSBundle mainBundle]
      pathForResource:[NSString stringWithFormat:@"embedded-browser-%d", size]
               ofType:@"png"];
}

// The product's icon for a place of so many pixels; nil where it is not installed.
NSImage* Icon(double pixels) {
  for (int size : kIconSizes) {
    NSString* file = size >= pixels ? IconFile(size) : nil;
    if (file != nil) return [[[NSImage alloc] initWithContentsOfFile:file] autorelease];
  }
  return nil;
}

// For each size width, height and the pixels with their opacity.
std::vector<unsigned long> IconsOfWindow() {
  std::vector<unsigned long> icons;
  for (int size : kIconSizes) {
    NSString* file = IconFile(size);
    NSImageRep* picture = file == nil ? nil : [NSBitmapImageRep imageRepWithContentsOfFile:file];
    if (![picture isKindOfClass:[NSBitmapImageRep class]]) continue;
    NSBitmapImageRep* pixels = (NSBitmapImageRep*)picture;
    if ([pixels samplesPerPixel] != 4 || [pixels bitsPerPixel] != 32) continue;
    icons.push_back([pixels pixelsWide]);
    icons.push_back([pixels pixelsHigh]);
    for (NSInteger y = 0; y < [pixels pixelsHigh]; ++y) {
      const unsigned char* at = [pixels bitmapData] + y * [pixels bytesPerRow];
      for (NSInteger x = 0; x < [pixels pixelsWide]; ++x, at += 4) {
        icons.push_back(static_cast<unsigned long>(at[3]) << 24 | at[0] << 16 | at[1] << 8 | at[2]);
      }
    }
  }
  return icons;
}

Display* Connection() { return static_cast<Display*>([GSCurrentServer() serverDevice]); }

// The screen that shows the middle of the window, in AppKit's coordinates; the first for none.
NSRect ScreenAround(NSRect window) {
  NSArray* screens = [NSScreen screens];
  const NSPoint middle = {NSMidX(window), NSMidY(window)};
  for (NSUInteger i = 0; i < [screens count]; ++i) {
    NSScreen* screen = [screens objectAtIndex:i];
    if (NSPointInRect(middle, [screen frame])) return [screen visibleFrame];
  }
  return [[NSScreen mainScreen] visibleFrame];
}

// Where a window stands in AppKit's coordinates, which begin at the lower left; empty for none.
NSRect FrameOf(Display* display, Window window) {
  const auto place = window != None ? PlaceOfWindow(display, window) : std::nullopt;
  if (!place) return NSZeroRect;
  const int height = DisplayHeight(display, DefaultScreen(display));
  return NSMakeRect(place->x, height - place->y - place->height, place->width, place->height);
}

}  // namespace

@implementation QuestionWindow

- (Window)device {
  return reinterpret_cast<Window>([GSCurrentServer() windowDevice:[self windowNumber]]);
}

// In the middle of the browser's window, or of the screen.
- (void)attachTo:(Window)browser {
  browser_ = browser;
  if (browser != None) AttachDialog(display_, [self device], browser);
  const NSRect around = FrameOf(display_, browser), screen = ScreenAround(around);
  const NSRect middle = NSIsEmptyRect(around) ? screen : around;
  const NSSize size = [self frame].size;
  const auto within = [](double wish, double low, double high) {
    return std::round(std::max(low, std::min(wish, high)));
  };
  [self setFrameOrigin:NSMakePoint(within(NSMidX(middle) - size.width / 2, NSMinX(screen),
                                          NSMaxX(screen) - size.width),
                                   within(NSMidY(middle) - size.height / 2, NSMinY(screen),
                                          NSMaxY(screen) - size.height))];
}

- (id)initWithAlert:(NSAlert*)alert {
  Display* const display = Connection();
  const Window browser = BrowserWindowOfProcess(display);
  const NSUInteger style = NSTitledWindowMask | NSClosableWindowMask;
  const double scale = ScaleOfDesktop(display);
  const NSSize screen = ScreenAround(FrameOf(display, browser)).size;
  const NSSize frame = [NSWindow frameRectForContentRect:NSZeroRect styleMask:style].size;
  const NSSize room = {screen.width - frame.width - kAroundDialog,
                       screen.height - frame.height - kAroundDialog};
  const QuestionLook look = {DesktopIsDark(display), scale,
                             [NSString stringWithUTF8String:SansSerifFamily().c_str()],
                             Icon(kQuestionIcon * scale)};
  QuestionView* view = [[[QuestionView alloc] initWithAlert:alert look:look room:room] autorelease];
  self = [super initWithContentRect:[view frame]
                          styleMask:style
                            backing:NSBackingStoreBuffered
                              defer:NO];
  if (self == nil) return nil;
  display_ = display;
  [self setReleasedWhenClosed:NO];
  [self setAutodisplay:NO];
  [self setAcceptsMouseMovedEvents:YES];
  [self setTitle:[alert messageText]];
  [self setContentView:view];
  keep_out_ = UserIsElsewhere(display);
  DescribeDialog(display, [self device]);
  SetNumbersOfWindow(display, [self device], "_NET_WM_ICON", XA_CARDINAL, IconsOfWindow());
  [self attachTo:browser];
  return self;
}

- (void)look:(NSTimer*)timer {
  if (browser_ == None) {
    const Window browser = BrowserWindowOfProcess(display_);
    if (browser != None) [self attachTo:browser];
  }
  // Nobody else keeps it above the browser's window.
  const bool managed = HasWindowManager(display_);
  if (!managed) XRaiseWindow(display_, [self device]);
  if (++looks_ == kMostLooks || (managed && browser_ != None)) [timer invalidate];
}

- (NSInteger)ask {
  NSTimer* timer = [NSTimer timerWithTimeInterval:kLookEvery
                                           target:self
                                         selector:@selector(look:)
                                         userInfo:nil
                                          repeats:YES];
  [[NSRunLoop currentRunLoop] addTimer:timer forMode:NSModalPanelRunLoopMode];
  if (!keep_out_) [NSApp activateIgnoringOtherApps:YES];
  asking_ = YES;
  const NSInteger answer = [NSApp runModalForWindow:self];
  asking_ = NO;
  // AppKit does this for a closed window only in a loop of its own. The next dialog would not get
  // the keyboard, and this one would come back with it.
  [self resignKeyWindow];
  [timer invalidate];
  // Without a window manager the keyboard would belong to nobody.
  if (!HasWindowManager(display_) && browser_ != None) GiveKeyboard(display_, browser_);
  return answer;
}

- (void)show {
  [self displayIfNeeded];
  [self flushWindow];
}

// While the user is elsewhere it is for the window manager to say when this has the keyboard.
- (void)sendEvent:(NSEvent*)event {
  if ([event type] == NSAppKitDefined && [event subtype] == GSAppKitWindowFocusIn) keep_out_ = NO;
  if ([event type] != NSKeyDown || ![[self contentView] takeKey:event]) [super sendEvent:event];
  [self show];
}

// AppKit throws keys away while it believes that another program has the keyboard, as it does when
// a window has gone and this one has followed at once. X knows better, and sends keys only to the
// window that is to have them.
- (void)resignKeyWindow {
  if (!asking_) [super resignKeyWindow];
}

// Keys are offered here first, then to the main menu, which has some of the same.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
  const BOOL taken = [[self contentView] takeKey:event];
  [self show];
  return taken;
}

- (void)orderFrontRegardless {
  // What AppKit has noted there is the time of an event of its own, which may be long past.
  LetTakeKeyboard(display_, [self device], !keep_out_);
  [super orderFrontRegardless];
  if (!keep_out_) GiveKeyboard(display_, [self device]);
}

- (BOOL)canBecomeKeyWindow {
  return YES;
}

// AppKit wants the keyboard for every panel. A window that could not have it at all would not get
// it from the window manager either.
- (void)makeKeyWindow {
  if (!keep_out_) [super makeKeyWindow];
}

// A main window gets the main menu as a bar of its own.
- (BOOL)canBecomeMainWindow {
  return NO;
}

- (void)performClose:(id)sender {
  (void)sender;
  [[self contentView] refuse];
}

@end

void SetMnemonic(NSButton* button, NSString* letter) {
  [button setKeyEquivalent:letter == nil ? @"" : letter];
  [button setKeyEquivalentModifierMask:NSCommandKeyMask];
}

NSInteger RunAlert(NSAlert* alert) {
  struct Shown {
    QuestionWindow* window;
    ~Shown() {
      [window close];
      [window release];
    }
  } shown{[[QuestionWindow alloc] initWithAlert:alert]};
  return [shown.window ask];
}
