#import "platform/QuestionView.h"

#import "platform/QuestionDrawing.h"

@implementation QuestionView

- (id)initWithAlert:(NSAlert*)alert look:(const QuestionLook&)look room:(NSSize)room {
  Question* question = new Question(alert, look, room);
  self = [super initWithFrame:NSMakeRect(0, 0, question->size.width, question->size.height)];
  if (self == nil) {
    delete question;
  } else {
    question_ = question;
  }
  return self;
}

- (void)dealloc {
  delete question_;
  [super dealloc];
}

- (BOOL)isFlipped {
  return YES;
}

- (BOOL)isOpaque {
  return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
  (void)event;
  return YES;
}

- (void)drawRect:(NSRect)rect {
  (void)rect;
  DrawQuestion(*question_);
}

- (BOOL)takeKey:(NSEvent*)event {
  NSString* keys = [event characters];
  const unichar key = [keys length] ? [keys characterAtIndex:0] : 0;
  NSString* letter = [[event charactersIgnoringModifiers] lowercaseString];
  const bool taken = question_->TakeKey(key, [event modifierFlags], letter);
  if (taken) [self setNeedsDisplay:YES];
  return taken;
}

- (void)refuse {
  question_->Answer(question_->Last());
}

- (int)buttonOf:(NSEvent*)event {
  return question_->ButtonAt([self convertPoint:[event locationInWindow] fromView:nil]);
}

- (void)mouseMoved:(NSEvent*)event {
  const int under = [self buttonOf:event];
  if (under == question_->under_mouse) return;
  question_->under_mouse = under;
  [self setNeedsDisplay:YES];
}

- (void)mouseDown:(NSEvent*)event {
  question_->pressed = [self buttonOf:event];
  [self setNeedsDisplay:YES];
}

// A button is pressed where the mouse has gone down on it and up again.
- (void)mouseUp:(NSEvent*)event {
  const int pressed = question_->pressed;
  question_->pressed = -1;
  if (pressed == [self buttonOf:event]) question_->Answer(pressed);
  [self setNeedsDisplay:YES];
}

- (void)scrollWheel:(NSEvent*)event {
  question_->Scroll(-[event deltaY] * kQuestionWheel);
  [self setNeedsDisplay:YES];
}

@end
