// The application object's delegate: loads the main menu and answers the user's quit request.

#ifndef GUI_CEFBROWSER_MACCEFBROWSERAPPDELEGATE_H_
#define GUI_CEFBROWSER_MACCEFBROWSERAPPDELEGATE_H_

#import <AppKit/AppKit.h>

// Main thread.
@interface MacCefBrowserAppDelegate : NSObject <NSApplicationDelegate>
// Loads the main menu and makes this object the delegate. What is thrown on the way is reported.
- (void)createApplication:(id)object;

// Asks all browsers to close, unless that is already under way. The run ends with the last of them.
- (void)tryToTerminateApplication:(NSApplication*)app;

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
@end

#endif  // GUI_CEFBROWSER_MACCEFBROWSERAPPDELEGATE_H_
