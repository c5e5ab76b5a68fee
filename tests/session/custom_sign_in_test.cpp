#include "GUI/cefBrowser/CefCustomSignInLogin.h"
#include "tests/session/SessionTest.h"

namespace {

using testing::ElementsAre;

constexpr char kUrl[] = "https://vpn.example/";

std::string Planted(const std::string& name, const std::string& value) {
  return "SetCookie(url=https://vpn.example/, name=" + name + ", value=" + value +
         ", domain=, path=/, secure=0, httponly=0)";
}

class CustomSignIn : public SessionTest {};

TEST_F(CustomSignIn, PlantsItsCookiesIntoAnEmptyStore) {
  auto session = Make<CefCustomSignInLogin>(kUrl, "KXEBID=abc;KXEBSTATUS=EB-LAUNCH");
  EXPECT_THAT(Start(session.get()),
              ElementsAre("CreateContext(handler=yes)", "DeleteCookies(url=, name=)",
                          Planted("KXEBID", "abc"), Planted("KXEBSTATUS", "EB-LAUNCH"),
                          Planted("KXEB-CLEAR", "1"),
                          "VisitUrlCookies(url=https://vpn.example/, includeHttpOnly=false)",
                          "CreateBrowser(url=https://vpn.example/)"));
  EXPECT_EQ(cef.createdSettings.webgl, STATE_DISABLED);
}

TEST_F(CustomSignIn, PlantsTheClearCookieOnlyForALaunch) {
  Start(Make<CefCustomSignInLogin>(kUrl, "EB-LAUNCH=1").get());
  EXPECT_THAT(cef.Trace({"SetCookie"}), ElementsAre());
  Start(Make<CefCustomSignInLogin>(kUrl, "KXEBSTATUS=x=y").get());
  EXPECT_THAT(cef.Trace({"SetCookie"}), ElementsAre(Planted("KXEBSTATUS", "x")));
}

}  // namespace
