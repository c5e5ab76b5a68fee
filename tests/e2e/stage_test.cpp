// An installation that lacks a part, or has one of another kind. These tests change the staged
// installation that all others use; they run alone.

#include "libs/kxaccess/InstallPaths.h"
#include "tests/e2e/E2eTest.h"
#include "tests/support/LogTrace.h"

namespace {

using testing::HasSubstr;

class StageTest : public E2eTest {
 protected:
  StarterReport SignIn() {
    return Run({"saml-login", "/saml-redirect/start?auto=1", "KXSAMLEMBID=launch", false, {}});
  }
};

constexpr char kResources[] = "/Contents/Resources/CorvaneResource_EN.txt";
constexpr char kMessages[] = "/Contents/Resources/MessageCatalogCorvaneUI_EN.txt";
constexpr char kAccess[] = "/Contents/Plugins/VELD/access.ini";
constexpr char kNoResources[] = "failed to load resource file [CorvaneResource_EN.txt]";
constexpr char kNoMessages[] = "Error loading some or all Message Catalog files.";

// What the helper cannot do without it says in its log; missing or broken texts do not stop a step.
TEST_F(StageTest, Catalogs) {
  const struct {
    const char* file;
    const char* content;  // null: missing
    const char* log;      // null: the step works
  } cases[] = {
      {kResources, nullptr, kNoResources},
      {kResources, "[1]\nValue=no mark\n", kNoResources},
      {kResources, "", nullptr},
      {kResources, "\xEF\xBB\xBF[1]\nValue=\xFF\xFE\xC3(\n[2", nullptr},
      {kMessages, nullptr, kNoMessages},
      {kMessages, "\xFF\xFE[\0", kNoMessages},
      {kMessages, "\xEF\xBB\xBF[1", nullptr},
      {kAccess, nullptr, kNoMessages},
      {kAccess, "", kNoMessages},
      {kAccess, "[MessageCatalogFiles]\nFile1=/no/such/file\n", kNoMessages},
  };
  for (const auto& entry : cases) {
    SCOPED_TRACE(std::string(entry.file) + ": " + (entry.content ? entry.content : "missing"));
    const std::string path = std::string(InstallPaths::kAppBundle) + entry.file;
    const TakenAway away(path);
    if (entry.content) std::ofstream(path) << entry.content;
    const StarterReport report = SignIn();
    EXPECT_EQ(report.verdict, entry.log ? "nothing written" : "signed in") << report.err;
    if (!entry.log) continue;
    EXPECT_EQ(report.helper_exit_status, 255);
    EXPECT_THAT(report.log, HasSubstr(entry.log));
  }
}

TEST_F(StageTest, Framework) {
  const std::string library = InstallPaths::kFrameworkLibrary;
  const struct {
    const char* put;  // null: nothing
    std::string error;
  } cases[] = {
      {nullptr, "dlopen " + library + ": " + library +
                    ": cannot open shared object file: No such file or directory\n"
                    "Failed to load the CEF framework.\n"},
      {EB_EMPTY_LIBRARY, "libcef_init_pointers failed \nFailed to load the CEF framework.\n"}};
  for (const auto& entry : cases) {
    const TakenAway away(library);
    if (entry.put) std::filesystem::copy_file(entry.put, library);
    const StarterReport report = SignIn();
    EXPECT_EQ(report.verdict, "nothing written");
    EXPECT_THAT(report.detail, HasSubstr("Failed to load the CEF framework."));
    EXPECT_THAT(report.err, HasSubstr(entry.error));
    EXPECT_EQ(report.helper_exit_status, 0);
    EXPECT_THAT(report.log, HasSubstr("failed to load cef library"));
    EXPECT_TRUE(box_->requests().empty()) << "no page was opened";
  }
}

// What the framework tells of requests, cookies, titles and the console shows at the highest level
// only, which all runs share.
TEST_F(StageTest, FullestLogTellsOfAllPartsOfAPage) {
  const LogTrace raised;
  const StarterReport report =
      Run({"saml-login", "/saml-many-parts/start?auto=1", "KXSAMLEMBID=launch", false, {}});
  EXPECT_EQ(report.verdict, "signed in") << report.err;
  for (const char* text :
       {"SetCookie \\(name:KXSAMLEMBID url:[^ ]*/start[^ ]*\\) ret = 1",
        "name=\\[KXSAMLEMBID\\] value.size\\(\\):6", "name=\\[IDPSESSION\\] value.size\\(\\):32",
        "/sso[^ ]*, Media type = 0", "/frame[^ ]*, Media type = 1", "/style[^ ]*, Media type = 2",
        "/script[^ ]*, Media type = 3", "/pixel[^ ]*, Media type = 4",
        "/fetched[^ ]*, Media type = 13", "\\(URL:\\)= text/html\n",
        "\\(URL:http://idp[^ ]*/sso[^ ]*\\)= text/css\n", "\\)= text/javascript\n",
        "OnTitleChange In parts\n", "OnTitleChange All parts\n",
        "Message: said 1 Object Source: http://idp[^ ]*/sso",
        "Message: Uncaught ReferenceError: nothing is not defined"}) {
    EXPECT_THAT(report.log, testing::ContainsRegex(text));
  }
}

}  // namespace
