#import "platform/FlatLook.h"

#include <cmath>

namespace {

constexpr FlatTheme kLight = {0xfafafa, 0x202124, 0xffffff, 0xeeeeef, 0xc8c8cc,
                              0x1c62b9, 0x1550a0, 0xffffff, 0xa0a0a6};
constexpr FlatTheme kDark = {0x26272b, 0xededf0, 0x3a3b40, 0x46474d, 0x55565d,
                             0x3a7fd5, 0x4f90e2, 0xffffff, 0x77787f};

}  // namespace

const FlatTheme& ThemeOf(bool dark) { return dark ? kDark : kLight; }

NSColor* Color(unsigned rgb) {
  return [NSColor colorWithCalibratedRed:(rgb >> 16 & 0xff) / 255.0
                                   green:(rgb >> 8 & 0xff) / 255.0
                                    blue:(rgb & 0xff) / 255.0
                                   alpha:1];
}

Paragraphs::Paragraphs(NSAttributedString* text, double width)
    : storage_([[NSTextStorage alloc] initWithAttributedString:text]),
      layout_([[NSLayoutManager alloc] init]),
      container_([[NSTextContainer alloc] initWithContainerSize:NSMakeSize(width, 1e6)]) {
  [container_ setLineFragmentPadding:0];
  [layout_ addTextContainer:container_];
  [storage_ addLayoutManager:layout_];
}

Paragraphs::~Paragraphs() {
  [container_ release];
  [layout_ release];
  [storage_ release];
}

double Paragraphs::Height() const {
  [layout_ glyphRangeForTextContainer:container_];
  return std::ceil([layout_ usedRectForTextContainer:container_].size.height);
}

void Paragraphs::Draw(NSPoint corner) const {
  [layout_ drawGlyphsForGlyphRange:[layout_ glyphRangeForTextContainer:container_] atPoint:corner];
}
