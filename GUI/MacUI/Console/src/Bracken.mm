#import "GUI/MacUI/Console/src/Bracken.h"

#include <string>

#import "GUI/MacUI/Console/src/LanguageChoice.h"
#import "GUI/MacUI/Console/src/MacResourceManager.h"
#import "GUI/MacUI/Console/src/StringConversions.h"
#include "GUI/newUI/ModuleNames.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#import "platform/AppKitSeam.h"
#import "platform/CatchThrown.h"

namespace {

NSString* InstalledText(NSString* name) {
  NSString* root = ResourceRootOfApplication(getHaldenCorvaneAppPath());
  return [[NSBundle bundleWithPath:root] pathForResource:name ofType:@"txt"];
}

std::wstring BrandingFile(const wchar_t* name) {
  return std::wstring(InstallPaths::kBrandingFolder) + name;
}

}  // namespace

void HandleException(NSException* exception) {
  KXLOG(4, kStrModuleName, "unhandled exception occured");
  showNsObject(exception);
}

@interface Bracken (SetUp)
- (void)setUp;
@end

@implementation Bracken

- (id)init {
  self = [super init];
  if (self == nil) return nil;
  if (id thrown = CatchThrown([self] { [self setUp]; })) {
    if ([thrown isKindOfClass:[NSException class]]) {
      logUIdata(@"intialisation of resource file failed in bracken", 1);
    }
    showNsObject(thrown);
  }
  return self;
}

// AppKit lets go of what an interface file makes as soon as nobody else holds it, and the end of
// this object is the end of the log. So it stays for the life of the process.
- (void)awakeFromNib {
  [self retain];
}

- (void)setUp {
  KXLogInitialize();
  KXLogSetModuleName("Corvane");
  g_strCorvaneLanguage = WideString([self getUserLanguage]);

  // A catalog that does not load shows later, as the text for an unknown identifier.
  g_oMsgCatalog.setBrandingFilePath(BrandingFile(L"BrandingMessageCatalog_EN.txt").c_str());
  g_oMsgCatalog.load(nullptr, g_strCorvaneLanguage.c_str());

  const std::wstring resources = WideString([self getResourcefilePath]);
  g_oResCatalog.setBrandingFilePath(BrandingFile(L"BrandingResourceCatalog_EN.txt").c_str());
  g_oResCatalog.load(resources.c_str(), g_strCorvaneLanguage.c_str());

  KXLogEnableMiniDump("Corvane.dmp");
  NSSetUncaughtExceptionHandler(HandleException);
}

- (NSString*)getUserLanguage {
  return LanguageForLocalizations([[NSBundle mainBundle] preferredLocalizations]);
}

- (NSString*)getResourcefilePath {
  return InstalledText(@"CorvaneResource_EN");
}

- (NSString*)getCatalogResourcefilePath {
  return InstalledText(@"MessageCatalogCorvaneUI_EN");
}

- (void)dealloc {
  KXLogCleanup();
  [super dealloc];
}

@end
