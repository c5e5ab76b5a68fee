#import "GUI/cefBrowser/MacCefBrowserApplication.h"

@implementation MacCefBrowserApplication

- (BOOL)isHandlingSendEvent {
  return handlingSendEvent_;
}

- (void)setHandlingSendEvent:(BOOL)handlingSendEvent {
  handlingSendEvent_ = handlingSendEvent;
}

- (void)sendEvent:(NSEvent*)event {
  // Restores the former value on every way out, exceptions included.
  CefScopedSendingEvent scoped;
  [super sendEvent:event];
}

// The process ends by closing its browsers, never from within AppKit.
- (void)terminate:(id)sender {
  [NSApp sendAction:@selector(tryToTerminateApplication:) to:[NSApp delegate] from:sender];
}

@end
