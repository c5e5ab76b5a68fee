#import "GUI/cefBrowser/MacCefBrowserAppDelegate.h"

#import "GUI/MacUI/Console/src/MacResourceManager.h"
#include "GUI/cefBrowser/CefBrowserHandler.h"
#include "GUI/cefBrowser/MacAppDelegate.h"
#import "GUI/cefBrowser/MacCefBrowserApplication.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#import "platform/AppKitSeam.h"
#import "platform/CatchThrown.h"
#include "platform/RaiseWindow.h"

@implementation MacCefBrowserAppDelegate

- (void)createApplication:(id)object {
  (void)object;
  id thrown = CatchThrown([self] {
    [NSApplication sharedApplication];
    [[NSBundle mainBundle] loadNibNamed:@"MainMenu" owner:NSApp topLevelObjects:nullptr];
    [[NSApplication sharedApplication] setDelegate:self];
    // The interface file sets up the user's language by way of Bracken, which names the process
    // after the client. Its records would else change their module in the middle of a run.
    KXLogSetModuleName(kLogModuleName);
  });
  if (thrown != nil) showNsObject(thrown);
}

- (void)tryToTerminateApplication:(NSApplication*)app {
  (void)app;
  EmbBrowserHandler* handler = EmbBrowserHandler::GetInstance();
  if (handler != nullptr && !handler->m_IsClosing_) handler->CloseAllBrowsers(false);
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
  (void)sender;
  return NSTerminateNow;
}

@end

int MacCreateAppDelegate() {
  StartAppKitProcess();
  // They are of no use to who starts the program.
  TakeAppKitMessages([](const char* message) { KXLOG(4, kStrModuleName, "%s", message); });
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // Without a display this is what fails, and the rest still goes on.
  CreateSharedApplication([MacCefBrowserApplication class], showNsObject);
  id thrown = CatchThrown([] {
    // Never released: it lives as long as the application object.
    MacCefBrowserAppDelegate* delegate = [[MacCefBrowserAppDelegate alloc] init];
    [delegate performSelectorOnMainThread:@selector(createApplication:)
                               withObject:nil
                            waitUntilDone:NO];
  });
  if (thrown != nil) showNsObject(thrown);
  [pool drain];
  return 0;
}

void BringToFront(void* windowHandle) {
  // Called from within CEF, which no exception of AppKit's may pass through.
  if (id thrown = CatchThrown([=] { RaiseWindow(windowHandle); })) showNsObject(thrown);
}
