#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdarg>
#include <sstream>
#include <string>
#include <vector>

#import "GUI/MacUI/Console/src/Bracken.h"
#import "GUI/MacUI/Console/src/LanguageChoice.h"
#import "GUI/MacUI/Console/src/MacResourceManager.h"
#include "libs/catalogUtil/GlobalCatalogs.h"
#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#import "platform/AppKitSeam.h"
#import "platform/guard.h"
#include "testing/support/TempDir.h"

// Claims to be an exception, and throws when it is asked for more.
@interface BrokenException : NSObject
@end

@implementation BrokenException
- (BOOL)isMemberOfClass:(Class)aClass {
  return aClass == [NSException class];
}
- (NSString*)name {
  [NSException raise:@"Broken" format:@"no name"];
  return nil;
}
@end

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
  const std::wstring cases[] = {
      L"",
      L"plain",
      L"\u00fc\u20ac\ufffd\uffff",
      L"\U0001F600 between \U0010FFFF",
      std::wstring(L"a\0b", 3),
      L"\ufefffirst",
      std::wstring(100000, L'\U0001F600'),
  };
  for (const std::wstring& text : cases) {
    NSString* string = [NSString stringWithwstring:text];
    ASSERT_NE(string, nil);
    EXPECT_EQ([string getWstring], text);
    EXPECT_EQ(WideString(string), text);
  }
  // Outside the basic plane one character takes two of NSString's units.
  EXPECT_EQ([[NSString stringWithwstring:L"\U0001F600"] length], 2u);
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
    std::vector<const char*> preferred;
    const char* code;
  } cases[] = {
      {{}, "en"},
      {{"English"}, "en"},
      {{"German"}, "de"},
      {{"Spanish"}, "es"},
      {{"French"}, "fr"},
      {{"Japanese"}, "ja"},
      {{"ko"}, "ko"},
      {{"zh_CN"}, "zh-cn"},
      {{"zh_TW"}, "zh"},
      {{"ZH_tw"}, "zh"},
      {{"gERMAN"}, "de"},
      {{"fr", "German"}, "de"},
      {{"de", "Italian", ""}, "en"},
      {{"Korean", "French", "German"}, "fr"},
      {{"zh-CN", "zh"}, "en"},
  };
  for (const auto& c : cases) {
    NSMutableArray* preferred = [NSMutableArray array];
    for (const char* name : c.preferred) {
      [preferred addObject:[NSString stringWithUTF8String:name]];
    }
    EXPECT_EQ(Utf8(LanguageForLocalizations(preferred)), c.code) << Utf8([preferred description]);
  }
}

TEST_F(ResourcesTest, TakesMnemonicMarkersOut) {
  const struct {
    const char* text;
    const char* shown;
  } cases[] = {
      {"&Continue", "Continue"},
      {"Cancel(&C)", "Cancel"},
      {"A && B", "A  B"},
      {"(&A) and (&B)", " and (B)"},
      {"&Save(&S)&", "Save"},
      {"no marker", "no marker"},
      {"(plain)", "(plain)"},
      // Too short to hold a whole marker: reported, and shown as it is.
      {"Cancel(&C", "Cancel(&C"},
      {"", ""},
  };
  TempDir dir;
  for (const auto& c : cases) {
    const std::string file =
        dir.write("texts.txt", std::string("\xEF\xBB\xBF[179]\nValue = ") + c.text + "\n");
    ASSERT_TRUE(g_oResCatalog.load(std::wstring(file.begin(), file.end()).c_str(), L""));
    EXPECT_EQ(Utf8(getStringFromResource(kResourceAcceptCertificate)), c.shown) << c.text;
  }
  EXPECT_EQ(Utf8(getStringFromResource(kResourceRefuseCertificate)),
            "<<180: UNKNOWN RESOURCE ID>>");
}

TEST_F(ResourcesTest, ReadsColours) {
  const struct {
    NSString* text;
    int red, green, blue;
  } cases[] = {
      {@"FF8000", 255, 128, 0},
      {@"0xff8000", 255, 128, 0},
      {@"12FF8000", 255, 128, 0},
      {@"1", 0, 0, 1},
      {@"00FF00 and more", 0, 255, 0},
      {@"", 0, 0, 0},
      {@"#FF8000", 0, 0, 0},
      {@"zz", 0, 0, 0},
      {nil, 0, 0, 0},
  };
  for (const auto& c : cases) {
    CGFloat red, green, blue, alpha;
    [[NSColor colorFromRGBString:c.text] getRed:&red green:&green blue:&blue alpha:&alpha];
    EXPECT_NEAR(red, c.red / 255.0, 1e-6) << Utf8(c.text);
    EXPECT_NEAR(green, c.green / 255.0, 1e-6) << Utf8(c.text);
    EXPECT_NEAR(blue, c.blue / 255.0, 1e-6) << Utf8(c.text);
    EXPECT_EQ(alpha, 1.0) << Utf8(c.text);
  }
}

TEST_F(ResourcesTest, NumbersMessagesInTheirOrderOfCreation) {
  const uint32_t first = PostMessageCount;
  PostMessageData* one = [[PostMessageData alloc] init];
  PostMessageData* two = [[PostMessageData alloc] init];
  EXPECT_EQ([one count], first);
  EXPECT_EQ([two count], first + 1);
  [one setCommandData:two];
  EXPECT_EQ([two retainCount], 1u) << "the data stays its sender's";
  [one release];
  [two release];
}

std::vector<std::string> g_records;

int TakeRecord(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  g_records.push_back(va_arg(arguments, const char*));
  va_end(arguments);
  return 0;
}

// Logs for real and looks at the records on their way to the file.
class LogTest : public ResourcesTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(KXLogInitialize(), 1);
    UserOutputFunc = TakeRecord;
    g_records.clear();
  }
  void TearDown() override {
    UserOutputFunc = nullptr;
    KXLogCleanup();
  }

  // Level and text of each record written since the last call; all of them name their source and
  // this layer's module.
  static std::vector<std::string> Records() {
    std::vector<std::string> texts;
    for (const std::string& record : g_records) {
      std::istringstream fields(record);
      std::string level, source, field, tag;
      for (int i = 0; i < 9 && fields >> field; ++i) (i == 2 ? level : source) = field;
      fields >> field >> tag;
      EXPECT_EQ(source.rfind("MacResourceManager:", 0), 0u) << record;
      EXPECT_EQ(tag, "'OrbUI'") << record;
      std::string text;
      std::getline(fields, text, '\r');
      texts.push_back(level + text);
    }
    g_records.clear();
    return texts;
  }
};

TEST_F(LogTest, ReportsThrownObjects) {
  NSException* fresh = [NSException exceptionWithName:@"Fresh" reason:@"100%% sure" userInfo:nil];
  const struct {
    id object;
    std::vector<std::string> lines;
  } cases[] = {
      // The texts are formats, so that two signs show as one.
      {fresh, {"1 Nsexception occured in UI", "1 Fresh", "1 100% sure"}},
      {[DerivedException exceptionWithName : @"Derived" reason : @"no" userInfo : nil],
       { "1 generic exception occurred in UI" }},
      {@"a text", {"1 generic exception occurred in UI"}},
      {nil, {"1 generic exception occurred in UI"}},
      {[[[BrokenException alloc] init] autorelease],
       {"1 Nsexception occured in UI", "1 NSException  occurred in UI nsshowobj"}},
  };
  for (const auto& c : cases) {
    showNsObject(c.object);
    EXPECT_EQ(Records(), c.lines);
  }
}

TEST_F(LogTest, ReportsTheCallStackOfARaisedException) {
  id raised = CatchThrown([] { [NSException raise:@"Raised" format:@"why"]; });
  showNsObject(raised);
  const auto lines = Records();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[1], "1 Raised");
  EXPECT_EQ(lines[2], "1 why");
}

TEST_F(LogTest, KeepsLevelsWithinTheirRange) {
  // As if the level had been taken over from the control block just now.
  TraceLevelUpdateCount = ControlBlock()->level_updates;
  CurrentTraceLevel = 5;
  for (int level : {0, 1, 5, 6, -1, 100}) logUIdata(@"text", level);
  logUIdata(nil, 1);
  EXPECT_EQ(Records(),
            (std::vector<std::string>{"0 text", "1 text", "5 text", "5 text", "5 text", "5 text"}));
}

TEST_F(LogTest, ReportsAMarkerThatIsCutOff) {
  TempDir dir;
  const std::string file = dir.write("texts.txt", "\xEF\xBB\xBF[179]\nValue = Cancel(&C\n");
  ASSERT_TRUE(g_oResCatalog.load(std::wstring(file.begin(), file.end()).c_str(), L""));
  g_records.clear();
  EXPECT_EQ(Utf8(getStringFromResource(kResourceAcceptCertificate)), "Cancel(&C");
  EXPECT_FALSE(Records().empty());
}

TEST_F(ResourcesTest, FindsTheTextsOfAnInstalledApplication) {
  TempDir dir;
  dir.write("Some.app/Contents/Resources/CorvaneResource_EN.txt", "");
  NSString* app = [NSString stringWithUTF8String:dir.file("Some.app").c_str()];
  NSBundle* bundle = [NSBundle bundleWithPath:ResourceRootOfApplication(app)];
  EXPECT_NE([bundle pathForResource:@"CorvaneResource_EN" ofType:@"txt"], nil);
  EXPECT_EQ([bundle pathForResource:@"MessageCatalogCorvaneUI_EN" ofType:@"txt"], nil);
}

TEST_F(ResourcesTest, BrackenSetsUpTheProcess) {
  g_strCorvaneLanguage.clear();
  Bracken* bracken = [[Bracken alloc] init];
  ASSERT_NE(bracken, nil);
  EXPECT_STREQ(CurrentModuleName, "Corvane");
  // This program has no localisations.
  EXPECT_EQ(g_strCorvaneLanguage, L"en");
  EXPECT_EQ(g_oResCatalog.getBrandingFilePath(),
            std::wstring(InstallPaths::kBrandingFolder) + L"BrandingResourceCatalog_EN.txt");
  EXPECT_EQ(g_oMsgCatalog.getBrandingFilePath(),
            std::wstring(InstallPaths::kBrandingFolder) + L"BrandingMessageCatalog_EN.txt");
  EXPECT_EQ(NSGetUncaughtExceptionHandler(), HandleException);
  EXPECT_EQ(bLogInitialized, 1);
  [bracken release];
  EXPECT_EQ(bLogInitialized, 0);
  NSSetUncaughtExceptionHandler(nullptr);
}

}  // namespace
