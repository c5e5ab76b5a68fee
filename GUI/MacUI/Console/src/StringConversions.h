// Every crossing between wide strings and NSString.

#ifndef GUI_MACUI_CONSOLE_SRC_STRINGCONVERSIONS_H_
#define GUI_MACUI_CONSOLE_SRC_STRINGCONVERSIONS_H_

#import <Foundation/Foundation.h>

#include <string>

// How the characters of a wide string lie in memory: UTF-32, little-endian.
extern const NSStringEncoding kEncoding_wchar_t;

@interface NSString (wstring_additions)
// The text as an autoreleased string; nil when it holds a value that is no character (a surrogate,
// or anything above U+10FFFF).
+ (NSString*)stringWithwstring:(const std::wstring&)text;

// The text as a wide string; empty when it holds a lone surrogate. Sending this to nil is
// undefined: where the string may be nil, WideString() is the way.
- (std::wstring)getWstring;
@end

// [text getWstring], empty for nil.
std::wstring WideString(NSString* text);

#endif  // GUI_MACUI_CONSOLE_SRC_STRINGCONVERSIONS_H_
