#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#import "GUI/MacUI/Console/src/Bracken.h"
#import "GUI/MacUI/Console/src/LanguageChoice.h"
#import "GUI/MacUI/Console/src/MacResourceManager.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#import "platform/AppKitSeam.h"
#import "platform/CatchThrown.h"
#include "tests/support/LogTrace.h"
#include "tests/support/TempDir.h"

@interface DerivedException : NSException
@end

@implementation DerivedException
@end

namespace {

class ResourcesTest : public testing::Test {
 protected:
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  ~ResourcesTest() override { [pool_ drain]; }
};

std::string Utf8(NSString* text) { return text == nil ? "(nil)" : [text UTF8String]; }

TEST_F(ResourcesTest, WideStringsSurviveTheRoundTrip) {
  for (const std::wstring& text :
       {std::wstring(), std::wstring(L"\u00fc\u20ac\uffff \U0001F600\U0010FFFF"),
        std::wstring(L"a\0b", 3), std::wstring(L"\ufefffirst")}) {
    NSString* string = [NSString stringWithwstring:text];
    ASSERT_NE(string, nil);
    EXPECT_EQ([string getWstring], text);
    EXPECT_EQ(WideString(string), text);
  }
}

TEST_F(ResourcesTest, TextsThatAreNoTextGiveNil) {
  for (const int value : {0xD800, 0xDFFF, 0x110000, INT_MAX}) {
    const std::wstring text = {L'a', static_cast<wchar_t>(value), L'b'};
    EXPECT_EQ([NSString stringWithwstring:text], nil) << std::hex << value;
  }
  EXPECT_EQ(WideString(nil), L"");
  const unichar lone = 0xD800;
  EXPECT_EQ(WideString([NSString stringWithCharacters:&lone length:1]), L"");
}

TEST_F(ResourcesTest, ChoosesTheFirstLanguageThatTheProductHas) {
  const struct {
    NSString* preferred;  // separated by commas
    const char* code;
  } cases[] = {
      {@"", "en"},         {@"gERMAN", "de"},      {@"zh_CN", "zh-cn"},
      {@"zh_TW", "zh"},    {@"fr,German", "de"},   {@"Korean,French,German", "fr"},
      {@"zh-CN,zh", "en"}, {@"ko,Japanese", "ko"},
  };
  for (const auto& c : cases) {
    NSArray* preferred = [c.preferred componentsSeparatedByString:@","];
    EXPECT_EQ(Utf8(LanguageForLocalizations(preferred)), c.code) << Utf8(c.preferred);
  }
}

TEST_F(ResourcesTest, TakesMnemonicMarkersOut) {
  const struct {
    const char* text;
    const char* shown;
    bool reported;
  } cases[] = {
      {"&Continue", "Continue", false},
      {"Cancel(&C)", "Cancel", false},
      {"(&A) and (&B)", " and (B)", false},
      {"(plain)", "(plain)", false},
      // Too short to hold a whole marker: shown as it is.
      {"Cancel(&C", "Cancel(&C", true},
  };
  TempDir dir;
  LogTrace log;
  for (const auto& c : cases) {
    const std::string file =
        dir.write("texts.txt", std::string("\xEF\xBB\xBF[179]\nValue = ") + c.text + "\n");
    ASSERT_TRUE(g_oResCatalog.load(std::wstring(file.begin(), file.end()).c_str(), L""));
    log.Take();
    EXPECT_EQ(Utf8(getStringFromResource(kResourceAcceptCertificate)), c.shown) << c.text;
    EXPECT_EQ(!log.Take().empty(), c.reported) << c.text;
  }
}

TEST_F(ResourcesTest, ReportsThrownObjects) {
  const std::string other = "1 'OrbUI' generic exception occurred in UI";
  const std::string known = "1 'OrbUI' Nsexception occured in UI";
  const struct {
    id object;
    std::vector<std::string> lines;
  } cases[] = {
      // The texts are formats, so that two signs show as one.
      {[NSException exceptionWithName : @"Fresh" reason : @"100%% sure" userInfo : nil],
       { known, "1 'OrbUI' Fresh", "1 'OrbUI' 100% sure" }},
      {[DerivedException exceptionWithName : @"Derived" reason : @"no" userInfo : nil], { other }},
      {nil, {other}},
  };
  LogTrace log;
  for (const auto& c : cases) {
    showNsObject(c.object);
    EXPECT_EQ(log.Take(), c.lines);
  }
  // One that was raised has its call stack besides.
  showNsObject(CatchThrown([] { [NSException raise:@"Raised" format:@"why"]; }));
  EXPECT_EQ(log.Take().size(), 4u);
}

TEST_F(ResourcesTest, BrackenSetsUpTheProcess) {
  g_strCorvaneLanguage.clear();
  Bracken* bracken = [[Bracken alloc] init];
  EXPECT_STREQ(CurrentModuleName, "Corvane");
  // This program has no localisations.
  EXPECT_EQ(g_strCorvaneLanguage, L"en");
  EXPECT_EQ(g_oResCatalog.getBrandingFilePath(),
            std::wstring(InstallPaths::kBrandingFolder) + L"BrandingResourceCatalog_EN.txt");
  EXPECT_EQ(NSGetUncaughtExceptionHandler(), HandleException);
  // An interface file's objects are let go of once it is loaded: that must not end the log.
  [bracken awakeFromNib];
  [bracken release];
  EXPECT_EQ(bLogInitialized, 1);
  [bracken release];
  EXPECT_EQ(bLogInitialized, 0);
  NSSetUncaughtExceptionHandler(nullptr);
}

}  // namespace
