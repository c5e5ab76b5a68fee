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

}  // namespace
