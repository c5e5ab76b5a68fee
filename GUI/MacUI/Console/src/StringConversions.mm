#import "GUI/MacUI/Console/src/StringConversions.h"

#import "platform/AppKitSeam.h"

static_assert(sizeof(wchar_t) == 4, "a wide string holds one code point per element");

const NSStringEncoding kEncoding_wchar_t = WideStringEncoding();

@implementation NSString (wstring_additions)

+ (NSString*)stringWithwstring:(const std::wstring&)text {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size() * sizeof(wchar_t)
                                 encoding:kEncoding_wchar_t] autorelease];
}

- (std::wstring)getWstring {
  NSData* data = [self dataUsingEncoding:kEncoding_wchar_t];
  if (data == nil) return std::wstring();
  return std::wstring(static_cast<const wchar_t*>([data bytes]), [data length] / sizeof(wchar_t));
}

@end

std::wstring WideString(NSString* text) { return text == nil ? std::wstring() : [text getWstring]; }
