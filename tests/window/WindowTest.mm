#include "tests/window/WindowTest.h"

#import "GUI/cefBrowser/MacCefBrowserApplication.h"
#import "platform/AppKitSeam.h"
#include "platform/Display.h"

VirtualDisplay& TestDisplay() {
  static VirtualDisplay display(VirtualDisplay::WindowManager::kOpenbox);
  return display;
}

void StartTestApplication() {
  TestDisplay();
  StartAppKitProcess();
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  CreateSharedApplication([MacCefBrowserApplication class],
                          [](id thrown) { NSLog(@"%@", thrown); });
  ConnectDisplay();
  [pool drain];
}
