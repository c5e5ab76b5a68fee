#import <AppKit/AppKit.h>

#include "platform/Display.h"

bool HaveDisplay() { return NSApp != nil; }

void ConnectDisplay() {}
