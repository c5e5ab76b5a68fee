#import "platform/Question.h"

#include <algorithm>
#include <cmath>

namespace {

// Lengths at 96 dots per inch.
constexpr double kMargin = kQuestionMargin, kGap = 12, kIcon = kQuestionIcon, kTextWidth = 430,
                 kFont = 14, kHeadFont = 17;
constexpr double kButtonHeight = 34, kButtonWidth = 96, kButtonMargin = 18;
constexpr double kFewLines = 40, kFewWords = 360, kIconGap = 16;

constexpr unichar kEscape = 0x1b, kEnter = 0x03;

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

Question::Question(NSAlert* alert, const QuestionLook& look, NSSize room)
    : theme(ThemeOf(look.dark)), scale(look.scale), icon([look.icon retain]) {
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

Question::~Question() {
  for (const Button& button : buttons) {
    [button.title release];
    [button.mnemonic release];
  }
  delete heading;
  delete body;
  [icon release];
}

void Question::AddButton(NSButton* from, NSFont* font, bool last) {
  NSMutableAttributedString* title =
      Styled([from title], font, last ? theme.accent_text : theme.text);
  NSString* mnemonic = [from keyEquivalentModifierMask] & NSCommandKeyMask
                           ? [[from keyEquivalent] lowercaseString]
                           : @"";
  const NSRange letter = [mnemonic length] ? [[[from title] lowercaseString] rangeOfString:mnemonic]
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

// Buttons stand in a row from the right, or below each other where they are too wide for that.
double Question::PlaceButtons(double width) {
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

int Question::ButtonAt(NSPoint point) const {
  for (int i = 0; i <= Last(); ++i) {
    if (NSPointInRect(point, buttons[i].frame)) return i;
  }
  return -1;
}

void Question::Answer(int button) const {
  if (button >= 0) [NSApp stopModalWithCode:NSAlertFirstButtonReturn + button];
}

void Question::Scroll(double by) {
  scrolled =
      std::clamp(scrolled + by * scale, 0.0, std::max(0.0, body_height - body_frame.size.height));
}

bool Question::TakeKey(unichar key, unsigned modifiers, NSString* letter) {
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
      Scroll(-kQuestionWheel);
      return true;
    case NSDownArrowFunctionKey:
      Scroll(kQuestionWheel);
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
