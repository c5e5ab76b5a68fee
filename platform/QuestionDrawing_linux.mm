#import "platform/QuestionDrawing.h"

#include <algorithm>
#include <cmath>

namespace {

// Lengths at 96 dots per inch.
constexpr double kMargin = kQuestionMargin, kIcon = kQuestionIcon, kRound = 6, kBar = 6, kRing = 2;

constexpr unsigned kAmber = 0xf0a30a, kAmberSign = 0x3a2a00;

NSBezierPath* Rounded(NSRect frame, double radius) {
  return [NSBezierPath bezierPathWithRoundedRect:frame xRadius:radius yRadius:radius];
}

void DrawSign(const Question& q) {
  const double margin = kMargin * q.scale, side = kIcon * q.scale;
  [q.icon drawInRect:NSMakeRect(margin, margin, side, side)
            fromRect:NSZeroRect
           operation:NSCompositeSourceOver
            fraction:1
      respectFlipped:YES
               hints:nil];
  // The sign of warning: all of the place where there is no icon, else its lower right corner.
  const double width = q.icon ? side * 0.56 : side * 0.9;
  const NSPoint corner = {margin + side - width + (q.icon ? side * 0.1 : 0),
                          margin + side - width + (q.icon ? side * 0.1 : 0)};
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
  [Color(q.theme.window) set];
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

void DrawText(const Question& q) {
  q.heading->Draw(NSMakePoint(q.body_frame.origin.x, kMargin * q.scale));
  [NSGraphicsContext saveGraphicsState];
  NSRectClip(q.body_frame);
  q.body->Draw(NSMakePoint(q.body_frame.origin.x, q.body_frame.origin.y - std::round(q.scrolled)));
  [NSGraphicsContext restoreGraphicsState];
  const double seen = q.body_frame.size.height;
  if (q.body_height <= seen) return;
  [Color(q.theme.bar) set];
  const double bar = std::max(24 * q.scale, seen * seen / q.body_height);
  const double y = (seen - bar) * q.scrolled / (q.body_height - seen);
  [Rounded(NSMakeRect(NSMaxX(q.body_frame) + kBar * q.scale, q.body_frame.origin.y + y,
                      kBar * q.scale, bar),
           kBar * q.scale / 2) fill];
}

void DrawButton(const Question& q, int i) {
  const Question::Button& button = q.buttons[i];
  const bool accent = i == q.Last(), lit = q.under_mouse == i || q.pressed == i;
  [Color(accent ? (lit ? q.theme.accent_hover : q.theme.accent)
                : (lit ? q.theme.hover : q.theme.button)) set];
  const NSRect inner = NSInsetRect(button.frame, 0.5, 0.5);
  NSBezierPath* shape = Rounded(inner, kRound * q.scale);
  [shape fill];
  if (!accent) {
    [Color(q.theme.line) set];
    [shape setLineWidth:std::max(1.0, std::floor(q.scale))];
    [shape stroke];
  }
  if (i == q.focus) {
    [Color(q.theme.accent) set];
    const double off = -(kRing + 1) * q.scale;
    NSBezierPath* ring =
        Rounded(NSInsetRect(button.frame, off, off), (kRound + kRing + 1) * q.scale);
    [ring setLineWidth:kRing * q.scale];
    [ring stroke];
  }
  const NSSize text = [button.title size];
  [button.title drawAtPoint:NSMakePoint(std::round(NSMidX(button.frame) - text.width / 2),
                                        std::round(NSMidY(button.frame) - text.height / 2))];
}

}  // namespace

void DrawQuestion(const Question& q) {
  [Color(q.theme.window) set];
  NSRectFill(NSMakeRect(0, 0, q.size.width, q.size.height));
  // Without a window manager this is all the border there is.
  [Color(q.theme.line) set];
  NSFrameRect(NSMakeRect(0, 0, q.size.width, q.size.height));
  if (q.with_sign) DrawSign(q);
  DrawText(q);
  for (int i = 0; i <= q.Last(); ++i) DrawButton(q, i);
}
