#import "platform/QuestionView.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// Lengths at 96 dots per inch.
constexpr double kMargin = 24, kGap = 12, kIcon = kQuestionIcon, kTextWidth = 430, kFont = 14,
                 kHeadFont = 17;
constexpr double kButtonHeight = 34, kButtonWidth = 96, kButtonMargin = 18, kRound = 6;
constexpr double kFewLines = 40, kFewWords = 360, kIconGap = 16, kBar = 6, kWheel = 48, kRing = 2;

constexpr unichar kEscape = 0x1b, kEnter = 0x03;

struct Theme {
  unsigned window, text, button, hover, line, accent, accent_hover, accent_text, bar;
};
constexpr Theme kLight = {0xfafafa, 0x202124, 0xffffff, 0xeeeeef, 0xc8c8cc,
                          0x1c62b9, 0x1550a0, 0xffffff, 0xa0a0a6};
constexpr Theme kDark = {0x26272b, 0xededf0, 0x3a3b40, 0x46474d, 0x55565d,
                         0x3a7fd5, 0x4f90e2, 0xffffff, 0x77787f};
constexpr unsigned kAmber = 0xf0a30a, kAmberSign = 0x3a2a00;

NSColor* Color(unsigned rgb) {
  return [NSColor colorWithCalibratedRed:(rgb >> 16 & 0xff) / 255.0
                                   green:(rgb >> 8 & 0xff) / 255.0
                                    blue:(rgb & 0xff) / 255.0
                                   alpha:1];
}

NSBezierPath* Rounded(NSRect frame, double radius) {
  return [NSBezierPath bezierPathWithRoundedRect:frame xRadius:radius yRadius:radius];
}

NSFont* Font(const QuestionLook& look, double size, NSFontTraitMask traits) {
  NSFont* font = [[NSFontManager sharedFontManager] fontWithFamily:look.family
                                                            traits:traits
                                                            weight:traits ? 9 : 5
                                                              size:std::round(size * look.scale)];
  return font ? font : [NSFont systemFontOfSize:std::round(size * look.scale)];
}

NSMutableAttributedString* Styled(NSString* text, NSFont* font, unsigned color) {
  NSDictionary* style =
      [NSDictionary dictionaryWithObjectsAndKeys:font, NSFontAttributeName, Color(color),
                                                 NSForegroundColorAttributeName, nil];
  return [[[NSMutableAttributedString alloc] initWithString:text attributes:style] autorelease];
}

// Text that has been broken into lines of a width.
class Paragraphs {
 public:
  Paragraphs(NSAttributedString* text, double width)
      : storage_([[NSTextStorage alloc] initWithAttributedString:text]),
        layout_([[NSLayoutManager alloc] init]),
        container_([[NSTextContainer alloc] initWithContainerSize:NSMakeSize(width, 1e6)]) {
    [container_ setLineFragmentPadding:0];
    [layout_ addTextContainer:container_];
    [storage_ addLayoutManager:layout_];
  }
  ~Paragraphs() {
    [container_ release];
    [layout_ release];
    [storage_ release];
  }
  Paragraphs(const Paragraphs&) = delete;
  Paragraphs& operator=(const Paragraphs&) = delete;

  double Height() const {
    [layout_ glyphRangeForTextContainer:container_];
    return std::ceil([layout_ usedRectForTextContainer:container_].size.height);
  }
  void Draw(NSPoint corner) const {
    [layout_ drawGlyphsForGlyphRange:[layout_ glyphRangeForTextContainer:container_]
                             atPoint:corner];
  }

 private:
  NSTextStorage* storage_;
  NSLayoutManager* layout_;
  NSTextContainer* container_;
};

// Tabs put the second and later entries of a list below the first, which follows a word.
NSParagraphStyle* ListStyle(NSFont* font) {
  const double word = [font widthOfString:@"Error:"] + [font pointSize];
  NSMutableParagraphStyle* style = [[[NSMutableParagraphStyle alloc] init] autorelease];
  NSMutableArray* stops = [NSMutableArray array];
  for (double at : {word / 2, word}) {
    [stops addObject:[[[NSTextTab alloc] initWithType:NSLeftTabStopType location:at] autorelease]];
  }
  [style setTabStops:stops];
  [style setLineSpacing:std::round([font pointSize] / 8)];
  return style;
}

}  // namespace

struct Question {
  struct Button {
    NSAttributedString* title;
    NSString* mnemonic;
    NSRect frame;
  };

  Theme theme;
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

  int Last() const { return static_cast<int>(buttons.size()) - 1; }

  int ButtonAt(NSPoint point) const {
    for (int i = 0; i <= Last(); ++i) {
      if (NSPointInRect(point, buttons[i].frame)) return i;
    }
    return -1;
  }

  void Answer(int button) const {
    if (button >= 0) [NSApp stopModalWithCode:NSAlertFirstButtonReturn + button];
  }

  void Scroll(double by) {
    scrolled =
        std::clamp(scrolled + by * scale, 0.0, std::max(0.0, body_height - body_frame.size.height));
  }

  // Buttons stand in a row from the right, or below each other where they are too wide for that.
  double PlaceButtons(double width) {
    double row = -kGap * scale;
    for (const Button& button : buttons) row += button.frame.size.width + kGap * scale;
    const bool stacked = row > width;
    double x = width + kMargin * scale, y = 0;
    for (Button& button : buttons) {
      if (stacked) {
        button.frame.size.width = width;
        button.frame.origin = NSMakePoint(kMargin * scale, y);
        y += button.frame.size.height + kGap * scale;
      } else {
        x -= button.frame.size.width;
        button.frame.origin = NSMakePoint(x, 0);
        x -= kGap * scale;
      }
    }
    return stacked ? y - kGap * scale : kButtonHeight * scale;
  }

  void AddButton(NSButton* from, NSFont* font, bool last) {
    NSMutableAttributedString* title =
        Styled([from title], font, last ? theme.accent_text : theme.text);
    NSString* mnemonic = [from keyEquivalentModifierMask] & NSCommandKeyMask
                             ? [[from keyEquivalent] lowercaseString]
                             : @"";
    const NSRange letter = [mnemonic length]
                               ? [[[from title] lowercaseString] rangeOfString:mnemonic]
                               : NSMakeRange(NSNotFound, 0);
    if (letter.location != NSNotFound) {
      [title addAttribute:NSUnderlineStyleAttributeName
                    value:[NSNumber numberWithInt:NSUnderlineStyleSingle]
                    range:letter];
    }
    const double width =
        std::max(kButtonWidth * scale, [title size].width + 2 * kButtonMargin * scale);
    buttons.push_back({[title retain],
                       [mnemonic retain],
                       NSMakeRect(0, 0, std::ceil(width), std::round(kButtonHeight * scale))});
  }

  Question(NSAlert* alert, const QuestionLook& look, NSSize room)
      : theme(look.dark ? kDark : kLight), scale(look.scale), icon([look.icon retain]) {
    const double margin = kMargin * scale, beside_icon = margin + (kIcon + kIconGap) * scale;
    // Where there is hardly room for the words they get all of it.
    with_sign = room.width - beside_icon - margin >= kFewWords * scale;
    const double left = with_sign ? beside_icon : margin;
    const double text_width = std::min(kTextWidth * scale, room.width - left - margin);
    size.width = std::round(left + text_width + margin);

    heading = new Paragraphs(
        Styled([alert messageText], Font(look, kHeadFont, NSBoldFontMask), theme.text), text_width);
    heading_height = heading->Height();
    NSFont* font = Font(look, kFont, 0);
    NSMutableAttributedString* text = Styled([alert informativeText], font, theme.text);
    [text addAttribute:NSParagraphStyleAttributeName
                 value:ListStyle(font)
                 range:NSMakeRange(0, [text length])];
    body = new Paragraphs(text, text_width);
    body_height = body->Height();
    // Its bar stands in the margin, beside the text.
    const double top = margin + heading_height + kGap / 2 * scale;

    NSArray* all = [alert buttons];
    const NSUInteger count = [all count];
    for (NSUInteger i = 0; i < count; ++i) {
      AddButton([all objectAtIndex:i], font, i + 1 == count);
    }
    focus = Last();
    const double row = PlaceButtons(size.width - 2 * margin);
    const double below = margin + row + margin;
    body_frame =
        NSMakeRect(left, std::round(top), text_width,
                   std::max(kFewLines * scale, std::min(body_height, room.height - top - below)));
    size.height =
        std::round(std::max(NSMaxY(body_frame), with_sign ? margin + kIcon * scale : 0) + below);
    for (Button& button : buttons) {
      button.frame.origin.y += size.height - margin - row;
      button.frame = NSIntegralRect(button.frame);
    }
  }

  ~Question() {
    for (const Button& button : buttons) {
      [button.title release];
      [button.mnemonic release];
    }
    delete heading;
    delete body;
    [icon release];
  }
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;

  void DrawSign() const {
    const double margin = kMargin * scale, side = kIcon * scale;
    [icon drawInRect:NSMakeRect(margin, margin, side, side)
              fromRect:NSZeroRect
             operation:NSCompositeSourceOver
              fraction:1
        respectFlipped:YES
                 hints:nil];
    // The sign of warning: all of the place where there is no icon, else its lower right corner.
    const double width = icon ? side * 0.56 : side * 0.9;
    const NSPoint corner = {margin + side - width + (icon ? side * 0.1 : 0),
                            margin + side - width + (icon ? side * 0.1 : 0)};
    const auto at = [&](double x, double y) {
      return NSMakePoint(corner.x + x * width, corner.y + y * width);
    };
    NSBezierPath* triangle = [NSBezierPath bezierPath];
    [triangle moveToPoint:at(0.5, 0.12)];
    [triangle lineToPoint:at(0.94, 0.9)];
    [triangle lineToPoint:at(0.06, 0.9)];
    [triangle closePath];
    [triangle setLineJoinStyle:NSRoundLineJoinStyle];
    // A rim in the window's colour sets the sign off from the icon.
    [Color(theme.window) set];
    [triangle setLineWidth:width * 0.26];
    [triangle stroke];
    [Color(kAmber) set];
    [triangle setLineWidth:width * 0.12];
    [triangle stroke];
    [triangle fill];
    [Color(kAmberSign) set];
    const NSPoint bar = at(0.45, 0.34), dot = at(0.44, 0.72);
    [Rounded(NSMakeRect(bar.x, bar.y, width * 0.1, width * 0.32), width * 0.05) fill];
    [Rounded(NSMakeRect(dot.x, dot.y, width * 0.12, width * 0.12), width * 0.06) fill];
  }

  void DrawText() const {
    heading->Draw(NSMakePoint(body_frame.origin.x, kMargin * scale));
    [NSGraphicsContext saveGraphicsState];
    NSRectClip(body_frame);
    body->Draw(NSMakePoint(body_frame.origin.x, body_frame.origin.y - std::round(scrolled)));
    [NSGraphicsContext restoreGraphicsState];
    const double seen = body_frame.size.height;
    if (body_height <= seen) return;
    [Color(theme.bar) set];
    const double bar = std::max(24 * scale, seen * seen / body_height);
    const double y = (seen - bar) * scrolled / (body_height - seen);
    [Rounded(
        NSMakeRect(NSMaxX(body_frame) + kBar * scale, body_frame.origin.y + y, kBar * scale, bar),
        kBar * scale / 2) fill];
  }

  void DrawButton(int i) const {
    const Button& button = buttons[i];
    const bool accent = i == Last(), lit = under_mouse == i || pressed == i;
    [Color(accent ? (lit ? theme.accent_hover : theme.accent) : (lit ? theme.hover : theme.button))
        set];
    const NSRect inner = NSInsetRect(button.frame, 0.5, 0.5);
    NSBezierPath* shape = Rounded(inner, kRound * scale);
    [shape fill];
    if (!accent) {
      [Color(theme.line) set];
      [shape setLineWidth:std::max(1.0, std::floor(scale))];
      [shape stroke];
    }
    if (i == focus) {
      [Color(theme.accent) set];
      const double off = -(kRing + 1) * scale;
      NSBezierPath* ring =
          Rounded(NSInsetRect(button.frame, off, off), (kRound + kRing + 1) * scale);
      [ring setLineWidth:kRing * scale];
      [ring stroke];
    }
    const NSSize text = [button.title size];
    [button.title drawAtPoint:NSMakePoint(std::round(NSMidX(button.frame) - text.width / 2),
                                          std::round(NSMidY(button.frame) - text.height / 2))];
  }

  void Draw() const {
    [Color(theme.window) set];
    NSRectFill(NSMakeRect(0, 0, size.width, size.height));
    // Without a window manager this is all the border there is.
    [Color(theme.line) set];
    NSFrameRect(NSMakeRect(0, 0, size.width, size.height));
    if (with_sign) DrawSign();
    DrawText();
    for (int i = 0; i <= Last(); ++i) DrawButton(i);
  }

  bool TakeKey(unichar key, unsigned modifiers, NSString* letter) {
    if (modifiers & (NSCommandKeyMask | NSAlternateKeyMask)) {
      for (int i = 0; i <= Last(); ++i) {
        if (![buttons[i].mnemonic isEqualToString:letter]) continue;
        Answer(i);
        return true;
      }
      return false;
    }
    if (modifiers & NSControlKeyMask) return false;
    const int count = Last() + 1;
    const double page = body_frame.size.height / scale * 0.9;
    switch (key) {
      case NSCarriageReturnCharacter:
      case NSNewlineCharacter:
      case kEnter:
      case kEscape:
        Answer(Last());
        return true;
      case ' ':
        Answer(focus);
        return true;
      // The first button is the right one.
      case NSBackTabCharacter:
      case NSRightArrowFunctionKey:
        focus = (focus + count - 1) % count;
        return true;
      case NSTabCharacter:
      case NSLeftArrowFunctionKey:
        focus = (focus + (modifiers & NSShiftKeyMask ? count - 1 : 1)) % count;
        return true;
      case NSUpArrowFunctionKey:
        Scroll(-kWheel);
        return true;
      case NSDownArrowFunctionKey:
        Scroll(kWheel);
        return true;
      case NSPageUpFunctionKey:
        Scroll(-page);
        return true;
      case NSPageDownFunctionKey:
        Scroll(page);
        return true;
      case NSHomeFunctionKey:
        Scroll(-body_height);
        return true;
      case NSEndFunctionKey:
        Scroll(body_height);
        return true;
      default:
        return false;
    }
  }
};

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
  question_->Draw();
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
  question_->Scroll(-[event deltaY] * kWheel);
  [self setNeedsDisplay:YES];
}

@end
