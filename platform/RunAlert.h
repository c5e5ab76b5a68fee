// Asking the user a question that everything else waits for.

#ifndef PLATFORM_RUNALERT_H_
#define PLATFORM_RUNALERT_H_

#import <AppKit/AppKit.h>

// Lets the user press the button with Alt and this letter, which its title shows underlined. Nil or
// a letter that the title lacks: nothing happens. Nor does anything on macOS, which has no such
// keys.
void SetMnemonic(NSButton* button, NSString* letter);

// [alert runModal]: NSAlertFirstButtonReturn and so on for the buttons, anything else when the
// alert ended without one. On Linux the alert is a dialog of the browser's window, in the colours
// and the size of the user's desktop; Return, Escape and the close button stand for its last
// button. Main thread.
NSInteger RunAlert(NSAlert* alert);

#endif  // PLATFORM_RUNALERT_H_
