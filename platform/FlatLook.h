// Colours and text of a flat dialog.
//
// Linux only. Main thread.

#ifndef PLATFORM_FLATLOOK_H_
#define PLATFORM_FLATLOOK_H_

#import <AppKit/AppKit.h>

// Colours as 0xRRGGBB.
struct FlatTheme {
  unsigned window, text, button, hover, line, accent, accent_hover, accent_text, bar;
};
const FlatTheme& ThemeOf(bool dark);

NSColor* Color(unsigned rgb);

// Text that has been broken into lines of a width, in pixels.
class Paragraphs {
 public:
  Paragraphs(NSAttributedString* text, double width);
  ~Paragraphs();
  Paragraphs(const Paragraphs&) = delete;
  Paragraphs& operator=(const Paragraphs&) = delete;

  double Height() const;
  // With its upper left corner there, in a flipped view that has the focus.
  void Draw(NSPoint corner) const;

 private:
  NSTextStorage* storage_;
  NSLayoutManager* layout_;
  NSTextContainer* container_;
};

#endif  // PLATFORM_FLATLOOK_H_
