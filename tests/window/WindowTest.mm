#include "tests/window/WindowTest.h"

#import "GUI/cefBrowser/MacCefBrowserApplication.h"
#import "platform/AppKitSeam.h"
#include "platform/Display.h"

VirtualDisplay& TestDisplay(bool managed) {
  static VirtualDisplay display(managed ? VirtualDisplay::WindowManager::kOpenbox
                                        : VirtualDisplay::WindowManager::kNone);
  return display;
}

void StartTestApplication(bool managed) {
  TestDisplay(managed);
  StartAppKitProcess();
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  CreateSharedApplication([MacCefBrowserApplication class],
                          [](id thrown) { NSLog(@"%@", thrown); });
  ConnectDisplay();
  [pool drain];
}
