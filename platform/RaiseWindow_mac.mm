#import <AppKit/AppKit.h>

#include "platform/RaiseWindow.h"

void RaiseWindow(void* window_handle) {
  NSView* view = (NSView*)window_handle;
  [[view window] orderFront:nil];
  [NSApp activateIgnoringOtherApps:YES];
}
