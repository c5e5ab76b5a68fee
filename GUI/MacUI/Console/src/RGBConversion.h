// Colours written as text.

#ifndef GUI_MACUI_CONSOLE_SRC_RGBCONVERSION_H_
#define GUI_MACUI_CONSOLE_SRC_RGBCONVERSION_H_

#import <AppKit/AppKit.h>

@interface NSColor (RGBConversion)
// The opaque calibrated colour of a hexadecimal number "RRGGBB". Higher digits are ignored; nil, or
// a text that does not begin with such a number, gives black.
+ (NSColor*)colorFromRGBString:(NSString*)text;
@end

#endif  // GUI_MACUI_CONSOLE_SRC_RGBCONVERSION_H_
