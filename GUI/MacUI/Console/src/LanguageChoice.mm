#import "GUI/MacUI/Console/src/LanguageChoice.h"

namespace {

struct Language {
  NSString* localization;
  NSString* code;
};

const Language kLanguages[] = {
    {@"English", @"en"},
    {@"German", @"de"},
    {@"Spanish", @"es"},
    {@"French", @"fr"},
    {@"Japanese", @"ja"},
    {@"ko", @"ko"},
    {@"zh_CN", @"zh-cn"},
    // The bare code is what the catalogs of traditional Chinese are called.
    {@"zh_TW", @"zh"},
};

}  // namespace

NSString* LanguageForLocalizations(NSArray* localizations) {
  for (NSUInteger i = 0; i < [localizations count]; ++i) {
    NSString* wanted = [localizations objectAtIndex:i];
    for (const Language& language : kLanguages) {
      if ([wanted caseInsensitiveCompare:language.localization] == NSOrderedSame) {
        return language.code;
      }
    }
  }
  return @"en";
}
