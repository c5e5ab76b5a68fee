#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSDisplayServer.h>

#include "platform/Display.h"

// The application object exists even when it could not reach a display; the server does not.
bool HaveDisplay() { return NSApp != nil && GSCurrentServer() != nil; }
