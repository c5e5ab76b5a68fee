// What a question looks like, and how it is answered: a calm, flat dialog of our own, light or
// dark. Knows nothing of the window that it is in.
//
// Linux only. Main thread.

#ifndef PLATFORM_QUESTIONVIEW_H_
#define PLATFORM_QUESTIONVIEW_H_

#import <AppKit/AppKit.h>

#import "platform/Question.h"

// Shows heading, text and buttons of an alert, the first button at the right, and the icon with
// a sign of warning. What does not fit scrolls, by wheel and by keys. Calls [NSApp
// stopModalWithCode:] with NSAlertFirstButtonReturn and so on. Return and Escape press the last
// button whatever has the focus, space the button with the focus, Alt and its mnemonic each; the
// focus begins on the last.
@interface QuestionView : NSView {
  Question* question_;
}
// As large as the alert needs, but no larger than `room`.
- (id)initWithAlert:(NSAlert*)alert look:(const QuestionLook&)look room:(NSSize)room;
// Whether the key has done something.
- (BOOL)takeKey:(NSEvent*)event;
// As if the last button had been pressed.
- (void)refuse;
@end

#endif  // PLATFORM_QUESTIONVIEW_H_
