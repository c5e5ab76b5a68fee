#import "GUI/MacUI/Console/src/MacResourceManager.h"

#import "GUI/MacUI/Console/src/StringConversions.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#import "platform/CatchThrown.h"

namespace {

// What a mnemonic marker such as "(&C)" takes.
constexpr NSUInteger kMarkerLength = 4;

// The text is passed as the format on purpose: that is how these records have always been written.
// Compilers warn of it, the more so where no argument follows.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
void LogAsFormat(int level, NSString* text) {
  const char* format = [text UTF8String];
  if (format != nullptr) KXLOG(level, kStrModuleName, format);
}
#pragma GCC diagnostic pop

void LogException(NSException* exception) {
  KXLOG(1, kStrModuleName, "Nsexception occured in UI");
  LogAsFormat(1, [exception name]);
  LogAsFormat(1, [exception reason]);
  LogAsFormat(1, [[exception callStackSymbols] description]);
}

}  // namespace

NSString* getHaldenCorvaneAppPath() {
  return [NSString stringWithUTF8String:InstallPaths::kAppBundle];
}

NSString* getStringFromResource(ResourceIdsOrbUI resource) {
  NSString* text = [NSString stringWithwstring:g_oResCatalog.getString(resource)];
  if (text == nil) return nil;
  if (id thrown = CatchThrown([&] {
        const NSRange marker = [text rangeOfString:@"(&"];
        if (marker.location != NSNotFound) {
          text =
              [text stringByReplacingCharactersInRange:NSMakeRange(marker.location, kMarkerLength)
                                            withString:@""];
        }
        text = [text stringByReplacingOccurrencesOfString:@"&" withString:@""];
      })) {
    showNsObject(thrown);
  }
  return text;
}

NSString* getMnemonicFromResource(ResourceIdsOrbUI resource) {
  const std::wstring text = g_oResCatalog.getString(resource);
  const size_t mark = text.find(L'&');
  if (mark == std::wstring::npos || mark + 1 == text.size() || text[mark + 1] == L'&') return nil;
  return [NSString stringWithwstring:text.substr(mark + 1, 1)];
}

void logUIdata(NSString* text, int level) {
  LogAsFormat(level >= 0 && level <= 5 ? level : 5, text);
}

void showNsObject(id object) {
  id thrown = CatchThrown([&] {
    if ([object isMemberOfClass:[NSException class]]) {
      LogException((NSException*)object);
    } else {
      KXLOG(1, kStrModuleName, "generic exception occurred in UI");
    }
  });
  if (thrown != nil) KXLOG(1, kStrModuleName, "NSException  occurred in UI nsshowobj");
}
