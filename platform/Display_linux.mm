#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSDisplayServer.h>

#import "platform/AppKitSeam.h"
#include "platform/Display.h"

// The application object exists even when it could not reach a display; the server does not.
bool HaveDisplay() { return NSApp != nil && GSCurrentServer() != nil; }

// A notification, since the application object is the program's and this is called by the
// framework.
void ConnectDisplay() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [[NSNotificationCenter defaultCenter] postNotificationName:kDisplayWanted object:nil];
  [pool drain];
}
