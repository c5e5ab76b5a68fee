#include "platform/ModalAlert.h"

#import <AppKit/AppKit.h>

// Not abortModal: it throws, and what is thrown must not pass through the queue that calls here.
void EndModalAlert() {
  if ([NSApp modalWindow] == nil) return;
  [NSApp stopModal];
  // The alert's loop looks at that only when an event has come.
  NSEvent* wake = [NSEvent otherEventWithType:NSApplicationDefined
                                     location:NSZeroPoint
                                modifierFlags:0
                                    timestamp:0
                                 windowNumber:0
                                      context:nil
                                      subtype:0
                                        data1:0
                                        data2:0];
  [NSApp postEvent:wake atStart:YES];
}
