#import <AppKit/AppKit.h>

#include "platform/IconPixels.h"

std::vector<uint32_t> IconPixels(const std::string& folder) {
  std::vector<uint32_t> pixels;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  for (const char* size : {"16", "32", "48", "128"}) {
    const std::string path = folder + "/embedded-browser-" + size + ".png";
    NSData* data = [NSData dataWithContentsOfFile:[NSString stringWithUTF8String:path.c_str()]];
    NSBitmapImageRep* picture = data ? [NSBitmapImageRep imageRepWithData:data] : nil;
    if (picture == nil || [picture samplesPerPixel] != 4 || [picture bitsPerSample] != 8 ||
        [picture isPlanar]) {
      continue;
    }
    const NSInteger width = [picture pixelsWide];
    const NSInteger height = [picture pixelsHigh];
    const unsigned char* row = [picture bitmapData];
    pixels.push_back(static_cast<uint32_t>(width));
    pixels.push_back(static_cast<uint32_t>(height));
    for (NSInteger y = 0; y < height; ++y, row += [picture bytesPerRow]) {
      for (const unsigned char* p = row; p < row + 4 * width; p += 4) {
        pixels.push_back(static_cast<uint32_t>(p[3]) << 24 | static_cast<uint32_t>(p[0]) << 16 |
                         static_cast<uint32_t>(p[1]) << 8 | p[2]);
      }
    }
  }
  [pool drain];
  return pixels;
}
