#import "GUI/MacUI/Console/src/RGBConversion.h"

@implementation NSColor (RGBConversion)

+ (NSColor*)colorFromRGBString:(NSString*)text {
  unsigned int rgb = 0;
  if (text != nil) [[NSScanner scannerWithString:text] scanHexInt:&rgb];
  return [NSColor colorWithCalibratedRed:((rgb >> 16) & 0xFF) / 255.0
                                   green:((rgb >> 8) & 0xFF) / 255.0
                                    blue:(rgb & 0xFF) / 255.0
                                   alpha:1.0];
}

@end
