// Included before every Objective-C++ source that is parsed on Linux: what the sources take from
// macOS and GNUstep's AppKit has not.

#ifdef __cplusplus

// CEF's atomic operations as on this system; all that follows as on macOS.
#include "include/base/cef_atomicops.h"
#undef OS_LINUX
#define OS_MACOSX 1

#import <Foundation/NSString.h>
enum { kCFStringEncodingUTF32LE = 0x1c000100 };
NSStringEncoding CFStringConvertEncodingToNSStringEncoding(unsigned int encoding);

#endif
