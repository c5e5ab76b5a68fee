#include "GUI/cefBrowser/CefSAMLLogin.h"
#include "tests/session/SessionTest.h"

namespace {

using testing::ElementsAre;

constexpr char kUrl[] = "https://vpn.example/sign-in";

class SamlLogin : public SessionTest {};

TEST_F(SamlLogin, PlantsTheLaunchCookieBeforeTheBrowserOpens) {
  auto session = Make<CefSAMLLogin>(kUrl, "a=1; KXSAMLEMBID=abc; b=2");
  EXPECT_THAT(Start(session.get()),
              ElementsAre("CreateContext(handler=yes)",
                          "DeleteCookies(url=https://vpn.example/sign-in, name=a=1; "
                          "KXSAMLEMBID=abc; b=2)",
                          "SetCookie(url=https://vpn.example/sign-in, name=KXSAMLEMBID, value=abc, "
                          "domain=, path=/, secure=0, httponly=0)",
                          "VisitUrlCookies(url=https://vpn.example/sign-in, includeHttpOnly=false)",
                          "CreateBrowser(url=https://vpn.example/sign-in)"));
  EXPECT_EQ(cef.createdSettings.webgl, STATE_DISABLED);
  EXPECT_EQ(session->m_url_domain, "vpn.example");
}

TEST_F(SamlLogin, ClearsAllCookiesWhenALogoutAddressIsGiven) {
  auto session = Make<CefSAMLLogin>(kUrl, "");
  session->m_samlSloUrlToClearCookies = "https://idp.example/slo";
  EXPECT_THAT(Start(session.get()),
              ElementsAre("CreateContext(handler=yes)",
                          "DeleteCookies(url=https://vpn.example/sign-in, name=)",
                          "DeleteCookies(url=, name=)",
                          "VisitUrlCookies(url=https://idp.example/slo, includeHttpOnly=true)",
                          "CreateBrowser(url=https://vpn.example/sign-in)"));
}

TEST_F(SamlLogin, CutsTheLaunchCookieAtItsEqualsSigns) {
  const char* const cases[][2] = {{"KXSAMLEMBID=abc=def=g", "name=KXSAMLEMBID, value=abc,"},
                                  {"KXSAMLEMBID", "name=KXSAMLEMBID, value=,"}};
  for (const auto& [cookie, planted] : cases) {
    Start(Make<CefSAMLLogin>(kUrl, cookie).get());
    EXPECT_THAT(cef.Trace({"SetCookie"}), ElementsAre(testing::HasSubstr(planted)));
  }
}

TEST_F(SamlLogin, JudgesResponses) {
  struct Response {
    const char* url;
    const char* cookies;
    bool finished;
  };
  struct Case {
    const char* name;
    std::vector<Response> responses;
    const char* post_auth;
    const char* idp_cookies;
  };
  const Case cases[] = {
      {"signed in",
       {{"https://vpn.example/sign-in", "KXSAMLEMBID=abc", false},
        {"https://idp.example/login", "first=1", false},
        {"https://idp.example/login", "second=2", false},
        {"https://idp.example/done", "third=3", false},
        {"https://vpn.example/done", "KXSAMLEBSTATEID=s1; KXSAMLEBSTATUS=1", true}},
       "KXSAMLEBSTATEID=s1",
       "third=3"},
      {"status longer than one character",
       {{"https://vpn.example/done", "KXSAMLEBSTATEID=s1; KXSAMLEBSTATUS=11", true}},
       "",
       ""},
      {"a third host, the gateway on another port and a foreign state cookie do not count",
       {{"https://idp.example/login", "", false},
        {"https://idp.example/login", "idp=1", false},
        {"https://third.example/x", "third=1", false},
        {"https://vpn.example:8443/x", "KXSAMLEBSTATEID=s1; KXSAMLEBSTATUS=1", false}},
       "",
       "idp=1"},
      {"an answer without cookies replaces the gathered ones",
       {{"https://idp.example/login", "", false},
        {"https://idp.example/login", "idp=1", false},
        {"https://idp.example/login", "", false}},
       "",
       ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto session = Make<CefSAMLLogin>(kUrl, "");
    Start(session.get());
    for (const Response& response : c.responses) {
      EXPECT_EQ(session->ProcessCookieResponse(response.url, response.cookies), response.finished)
          << response.url;
    }
    EXPECT_EQ(session->GetReturnData().postAuthCookie, c.post_auth);
    EXPECT_EQ(session->GetReturnData().samlIdpCookies, c.idp_cookies);
    EXPECT_FALSE(session->CheckIfCompleted(L"https://vpn.example/vora-na/auth/logout.cgi"));
  }
}

}  // namespace
