// A whole run of the driver on the fake framework: what it hands to CEF and in which order it ends.

#include <cstdlib>

#include "GUI/cefBrowser/CefBrowserClient.h"
#include "libs/kxaccess/InstallPaths.h"
#include "tests/session/SessionTest.h"
#include "tests/support/Segment.h"
#include "tests/support/TempDir.h"

namespace {

// Loads the framework that the driver would load; the fakes then take its place.
class Run : public SessionTest {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(CefBrowserClient::library_loader.LoadInMain()); }
};

TEST_F(Run, FillsTheSettingsAndHandsTheResultBack) {
  const TempDir home;
  const std::string data = home.path() + InstallPaths::kDataFolderUnderHome;
  std::filesystem::create_directories(data);
  setenv("HOME", home.path().c_str(), 1);
  const auto respond = [this](const char* state) {
    EmbBrowserHandler::GetInstance()->OnResourceResponse(
        cef.MakeBrowser().get(), nullptr, new FakeRequest("https://vpn.example/", state),
        new FakeResponse);
  };
  cef.whileRunning = [&] {
    FakeTrace("running");
    cef.currentThread = TID_IO;
    respond("KXSAMLEBSTATEID=s; KXSAMLEBSTATUS=1");
  };
  CefBrowserClient::getInstance(SAML_LOGIN)
      ->Navigate({SAML_LOGIN, "https://vpn.example/", "KXSAMLEMBID=a", "https://idp.example/"});

  EXPECT_THAT(cef.Trace({"SetCookie", "DeleteCookies(url=,", "running", "CloseB", "FlushStore"}),
              testing::ElementsAre("DeleteCookies(url=, name=)",
                                   testing::HasSubstr("name=KXSAMLEMBID, value=a,"), "running",
                                   "CloseBrowser(id=1, force=true)", "FlushStore()"));
  // CEF's IO thread lives on while the result is written.
  respond("KXSAMLEBSTATEID=late; KXSAMLEBSTATUS=1");
  EXPECT_EQ(EmbBrowserHandler::GetInstance()->m_Session_->GetReturnData().postAuthCookie,
            "KXSAMLEBSTATEID=s");
  EXPECT_THAT(TakeSegment(data), testing::HasSubstr("\"KXSAMLEBSTATEID=s\""));

  auto text = [](const cef_string_t& field) { return CefString(&field).ToString(); };
  const CefSettings& given = cef.settings;
  for (const cef_string_t* path :
       {&given.cache_path, &given.root_cache_path, &given.user_data_path}) {
    EXPECT_EQ(text(*path), data + "cef");
  }
  EXPECT_EQ(text(given.log_file), data + "cef_browser.log");
  EXPECT_EQ(text(given.framework_dir_path), InstallPaths::kFrameworkFolder);
  EXPECT_EQ(given.no_sandbox, 1);
  EXPECT_EQ(given.remote_debugging_port, 8088);
  EXPECT_EQ(given.uncaught_exception_stack_size, 20);
  EXPECT_EQ(given.log_severity, LOGSEVERITY_VERBOSE);
}

}  // namespace
