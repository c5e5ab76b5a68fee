// What CEF asks of the application object.

#ifndef CEF_INCLUDE_CEF_APPLICATION_MAC_H_
#define CEF_INCLUDE_CEF_APPLICATION_MAC_H_

#include "include/cef_base.h"

#if defined(__OBJC__)

#import <AppKit/AppKit.h>

// An application object that knows whether it is sending an event.
@protocol CrAppProtocol
- (BOOL)isHandlingSendEvent;
@end

// One that can be told.
@protocol CrAppControlProtocol <CrAppProtocol>
- (void)setHandlingSendEvent:(BOOL)handlingSendEvent;
@end

// What the class of NSApp implements.
@protocol CefAppProtocol <CrAppControlProtocol>
@end

// Marks NSApp as sending an event while it lives; stands in sendEvent:.
class CefScopedSendingEvent {
 public:
  CefScopedSendingEvent()
      : app_(static_cast<NSApplication<CefAppProtocol>*>([NSApplication sharedApplication])),
        handling_([app_ isHandlingSendEvent]) {
    [app_ setHandlingSendEvent:YES];
  }
  ~CefScopedSendingEvent() { [app_ setHandlingSendEvent:handling_]; }

 private:
  NSApplication<CefAppProtocol>* app_;
  BOOL handling_;

  DISALLOW_COPY_AND_ASSIGN(CefScopedSendingEvent);
};

#endif  // defined(__OBJC__)

#endif  // CEF_INCLUDE_CEF_APPLICATION_MAC_H_
