// Whole runs of the driver on the fake framework: what it hands to CEF, what it logs and what it
// hands back.

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "GUI/cefBrowser/CefBrowserClient.h"
#include "include/base/cef_bind.h"
#include "include/wrapper/cef_closure_task.h"
#include "libs/kxaccess/InstallPaths.h"
#include "tests/session/SessionTest.h"
#include "tests/support/LogTrace.h"
#include "tests/support/TempDir.h"

namespace {

struct Response {
  const char* url;
  const char* cookies;
};

// One request and its response, as CEF's IO thread reports them.
void Exchange(Response response) {
  EmbBrowserHandler* handler = EmbBrowserHandler::GetInstance();
  const CefRefPtr<FakeBrowser> browser = FakeCef::Instance()->browsers.front();
  const CefRefPtr<FakeRequest> request = new FakeRequest(response.url, response.cookies);
  if (handler->OnBeforeResourceLoad(browser.get(), browser->mainFrame.get(), request.get(),
                                    nullptr) == RV_CANCEL) {
    return;
  }
  handler->OnResourceResponse(browser.get(), browser->mainFrame.get(), request.get(),
                              new FakeResponse);
}

class Run : public SessionTest {
 protected:
  // Loads the framework that the driver would load; the fakes then take its place.
  static void SetUpTestSuite() { ASSERT_TRUE(CefBrowserClient::library_loader.LoadInMain()); }

  Run() {
    std::filesystem::create_directories(data_);
    setenv("HOME", home_.path().c_str(), 1);
    CefBrowserClient::m_initalized = false;
    cef.callsBack = true;
  }

  // Runs a step; returns the text that the caller then finds in the segment.
  std::string Step(const EmbBrowserInfo& info, const std::vector<Response>& responses) {
    for (const Response& response : responses)
      cef.Post(TID_IO, CefCreateClosureTask(base::Bind(&Exchange, response)));
    CefBrowserClient::getInstance(static_cast<WebBrowserType>(info.browserType))->Navigate(info);
    const int id = shmget(ftok(data_.c_str(), 'R'), 0, 0);
    if (id < 0) return "(no segment)";
    auto* text = static_cast<const char*>(shmat(id, nullptr, SHM_RDONLY));
    const std::string content(text, strnlen(text, 4096));
    shmdt(text);
    shmctl(id, IPC_RMID, nullptr);
    return content;
  }

  const TempDir home_;
  const std::string data_ = home_.path() + InstallPaths::kDataFolderUnderHome;
};

TEST_F(Run, FillsTheSettings) {
  Step({SAML_LOGIN, "https://vpn.example/", "", ""},
       {{"https://vpn.example/", "KXSAMLEBSTATEID=s"}});
  auto text = [](const cef_string_t& field) { return CefString(&field).ToString(); };
  const CefSettings& given = cef.settings;
  EXPECT_EQ(given.size, sizeof(cef_settings_t));
  EXPECT_EQ(text(given.cache_path), data_ + "cef");
  EXPECT_EQ(text(given.root_cache_path), data_ + "cef");
  EXPECT_EQ(text(given.user_data_path), data_ + "cef");
  EXPECT_EQ(text(given.log_file), data_ + "cef_browser.log");
  EXPECT_EQ(text(given.framework_dir_path), InstallPaths::kFrameworkFolder);
  EXPECT_EQ(text(given.user_agent),
            "Mozilla/5.0 (X11; Linux x86_64) Firefox/60 AppleWebKit/537.36 (KHTML, like Gecko) "
            "Chrome/80.0.3987.149 Safari/537.36 CorvaneWebClient");
  EXPECT_EQ(given.no_sandbox, 1);
  EXPECT_EQ(given.remote_debugging_port, 8088);
  EXPECT_EQ(given.uncaught_exception_stack_size, 20);
  EXPECT_EQ(given.log_severity, LOGSEVERITY_VERBOSE);
}

// The records of each kind of step, letter for letter, and what it hands back. An error page
// between two foreign pages is neither the identity provider nor its logout address.
TEST_F(Run, IsLoggedAsItHasAlwaysBeen) {
  const Response error_page = {"data:text/html;base64,AA", ""};
  const std::vector<std::string> end = {
      "3 'CEF' EmbBrowserHandler::DoClose", "3 'CEF' EmbBrowserHandler::OnBeforeClose",
      "3 'CEF' Calling CefQuitMessageLoop", "3 'CEF' Calling CefCookieManager::FlushStore"};
  const struct {
    EmbBrowserInfo info;
    std::vector<Response> responses;
    std::string result;
    std::vector<std::string> records;  // without those of the handler's two resource hooks
  } runs[] = {
      {{SAML_LOGIN, "https://vpn.example/in", "KXSAMLEMBID=abc", "https://idp.example/slo"},
       {error_page,
        {"https://idp.example/a", "i=1"},
        {"https://idp.example/b", "i=2"},
        {"https://vpn.example/done", "KXSAMLEBSTATEID=s1; KXSAMLEBSTATUS=1"}},
       R"({"postauthcookie":"KXSAMLEBSTATEID=s1","samlidpcookies":"i=2",)"
       R"("samlidplogoutrequesturl":"","samlslostate":0})",
       {"3 'CEF' Browser type requested 1",
        "4 'CEF' browser client object created",
        "4 'CEF' saml obj created",
        "4 'LinuxUI' CEF start for webLogin",
        "4 'CEF' EmbBrowserApp::OnBeforeCommandLineProcessing",
        "4 'CEF' CefSAMLLogin::OnContextInitialized",
        "3 'CEF' CefSAMLLogin::OnContextInitialized Clearing all cookies (https://idp.example/slo)",
        "3 'CEF' CefSAMLLogin::OnContextInitialized Setting url domain to: [vpn.example]",
        "4 'CEF' manager->SetCookie (name:KXSAMLEMBID url:https://vpn.example/in) ret = 1",
        "3 'CEF' calling CefRunMessageLoop",
        "4 'CEF' EmbBrowserHandler::OnAfterCreated",
        "3 'CEF' CefSAMLLogin::ProcessCookieResponse url:[https://idp.example/a] ",
        "4 'CEF' CefSAMLLogin::ProcessCookieResponse urlDomain:[idp.example] "
        "m_url_domain:[vpn.example]",
        "3 'CEF' Setting _urlIdpHost to idp.example",
        "3 'CEF' CefSAMLLogin::ProcessCookieResponse url:[https://idp.example/b] ",
        "4 'CEF' CefSAMLLogin::ProcessCookieResponse urlDomain:[idp.example] "
        "m_url_domain:[vpn.example]",
        "3 'CEF' CefSAMLLogin::ProcessCookieResponse url:[https://vpn.example/done] ",
        "4 'CEF' CefSAMLLogin::ProcessCookieResponse urlDomain:[vpn.example] "
        "m_url_domain:[vpn.example]",
        "4 'CEF' CefSAMLLogin::ProcessCookieResponse cookie:[KXSAMLEBSTATEID=s1; KXSAMLEBSTATUS=1] "
        "kSamlAuthCookieStateID:[KXSAMLEBSTATEID] eb_stateid:[KXSAMLEBSTATEID=s1]",
        "3 'CEF' eb_saml_stateid = KXSAMLEBSTATEID=s1 eb_saml_status = 1 ",
        "3 'CEF' successful saml auth ",
        "3 'CEF' ProcessCookieResponse(): Gathered IdP(idp.example) cookies of size 3"}},
      {{CUSTOM_SIGN_IN, "https://vpn.example/in", "KXEBID=2; KXEBSTATUS=EB-LAUNCH", ""},
       {{"https://vpn.example/a", "KXEBID=e; KXEBSTATUS=EB-HC-NEEDED"}},
       R"({"postauthcookie":"KXEBID=e;KXEBSTATUS=EB-HC-NEEDED;","samlidpcookies":"",)"
       R"("samlidplogoutrequesturl":"","samlslostate":0})",
       {"3 'CEF' Browser type requested 2", "4 'CEF' browser client object created",
        "4 'CEF' custom sign in obj created", "4 'LinuxUI' CEF start for webLogin",
        "4 'CEF' EmbBrowserApp::OnBeforeCommandLineProcessing",
        "4 'CEF' EmbBrowserApp::OnContextInitialized",
        "4 'CEF' manager->SetCookie (name:KXEBID url:https://vpn.example/in) ret = 1",
        "4 'CEF' manager->SetCookie (name:KXEBSTATUS url:https://vpn.example/in) ret = 1",
        "4 'CEF' SetCookie for EB launch",
        "4 'CEF' manager->SetCookie (name:KXEB-CLEAR url:https://vpn.example/in) ret = 1",
        "3 'CEF' calling CefRunMessageLoop", "4 'CEF' EmbBrowserHandler::OnAfterCreated",
        "3 'CEF'  cookies from response = 33", "3 'CEF' session end = 0 hc_needed 1 hc_failed 0",
        "3 'CEF' Found cookies for Custom Sign-in HC"}},
      {{SAML_LOGOUT, "https://vpn.example/vora-na/auth/logout.cgi", "KXID=1;;A=2", ""},
       {{"https://vpn.example/vora-na/auth/logout.cgi", ""},
        error_page,
        {"https://idp.example/x", ""}},
       R"({"postauthcookie":"","samlidpcookies":"",)"
       R"("samlidplogoutrequesturl":"https://idp.example/x","samlslostate":2})",
       {"3 'CEF' Browser type requested 3", "4 'CEF' browser client object created",
        "4 'CEF' saml logout obj created", "4 'LinuxUI' CEF start for webLogin",
        "4 'CEF' EmbBrowserApp::OnBeforeCommandLineProcessing",
        "4 'CEF' CefSAMLLogout::OnContextInitialized", "4 'OrbUI' Retrieved cookie of length: 6",
        "4 'OrbUI' Retrieved cookie of length: 3", "4 'OrbUI' Parsed 2 cookies",
        "4 'CEF' manager->SetCookie (name:A url:https://vpn.example/vora-na/auth/logout.cgi) ret = "
        "1",
        "4 'CEF' manager->SetCookie (name:KXID url:https://vpn.example/vora-na/auth/logout.cgi) "
        "ret = 1",
        "3 'CEF' calling CefRunMessageLoop", "4 'CEF' EmbBrowserHandler::OnAfterCreated",
        "3 'OrbUI' SAML SLO URL: https://vpn.example/vora-na/auth/logout.cgi State:1",
        "3 'OrbUI' SAML SLO URL: https://idp.example/x State:2",
        "3 'CEF' CheckIfCompleted returning true"}},
  };
  LogTrace log;
  for (const auto& run : runs) {
    SCOPED_TRACE(run.info.browserType);
    CefBrowserClient::m_initalized = false;
    cef.browsers.clear();
    EXPECT_EQ(Step(run.info, run.responses), run.result);
    Lines records;
    for (const std::string& record : log.Take()) {
      if (record.rfind("4 'CEF' EmbBrowserHandler::OnResourceResponse", 0) != 0) {
        records.push_back(record);
      }
    }
    Lines expected = run.records;
    expected.insert(expected.end(), end.begin(), end.end());
    EXPECT_EQ(records, expected);
  }
}

// CEF's IO thread lives on while the result is written.
TEST_F(Run, AsksNoSessionAboutRequestsAfterItsEnd) {
  Step({SAML_LOGIN, "https://vpn.example/", "", ""},
       {{"https://vpn.example/", "KXSAMLEBSTATEID=s; KXSAMLEBSTATUS=1"}});
  cef.currentThread = TID_IO;
  Exchange({"https://vpn.example/", "KXSAMLEBSTATEID=late; KXSAMLEBSTATUS=1"});
  EXPECT_EQ(EmbBrowserHandler::GetInstance()->m_Session_->GetReturnData().postAuthCookie,
            "KXSAMLEBSTATEID=s");
}

}  // namespace
