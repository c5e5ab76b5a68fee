// The application object: tells CEF whether an event is being dispatched, and turns the user's quit
// request into an orderly close of the browsers.

#ifndef GUI_CEFBROWSER_MACCEFBROWSERAPPLICATION_H_
#define GUI_CEFBROWSER_MACCEFBROWSERAPPLICATION_H_

#import <AppKit/AppKit.h>

#include "include/cef_application_mac.h"

@interface MacCefBrowserApplication : NSApplication <CefAppProtocol> {
  BOOL handlingSendEvent_;
}
@end

#endif  // GUI_CEFBROWSER_MACCEFBROWSERAPPLICATION_H_
