// A question of an alert as it stands in its view: where its parts are, and what keys and the mouse
// do to it.
//
// Linux only. Main thread.

#ifndef PLATFORM_QUESTION_H_
#define PLATFORM_QUESTION_H_

#import <AppKit/AppKit.h>

#include <vector>

#import "platform/FlatLook.h"

struct QuestionLook {
  bool dark;
  double scale;      // pixels for a length of 1
  NSString* family;  // of the font
  NSImage* icon;     // nil: the sign of warning stands alone
};

// Lengths: the icon's width and height, what is left free at the window's edges, and how far a
// notch of the wheel scrolls.
constexpr double kQuestionIcon = 48, kQuestionMargin = 24, kQuestionWheel = 48;

struct Question {
  struct Button {
    NSAttributedString* title;
    NSString* mnemonic;
    NSRect frame;
  };

  FlatTheme theme;
  double scale;
  NSImage* icon;
  bool with_sign;
  NSSize size;
  Paragraphs* heading;
  Paragraphs* body;
  double heading_height, body_height;
  NSRect body_frame;
  double scrolled = 0;
  std::vector<Button> buttons;
  int focus, pressed = -1, under_mouse = -1;

  // As large as the alert needs, but no larger than `room`.
  Question(NSAlert* alert, const QuestionLook& look, NSSize room);
  ~Question();
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;

  int Last() const { return static_cast<int>(buttons.size()) - 1; }
  // -1 for none.
  int ButtonAt(NSPoint point) const;
  // Ends the modal loop; does nothing for -1.
  void Answer(int button) const;
  // Downwards, by a length.
  void Scroll(double by);
  // Whether the key has done something. `letter` is the key's own, without modifiers.
  bool TakeKey(unichar key, unsigned modifiers, NSString* letter);

 private:
  void AddButton(NSButton* from, NSFont* font, bool last);
  double PlaceButtons(double width);
};

#endif  // PLATFORM_QUESTION_H_
