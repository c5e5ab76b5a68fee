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

TEST_F(CustomSignIn, JudgesEachResponseByItself) {
  const struct {
    const char* cookies;
    bool finished;
    const char* result;
  } cases[] = {
      {"", false, ""},
      {"KXEBID=a; KXEBSTATUS=EB-LAUNCH; KXID=d", false, ""},
      {"KXEBID=abc; KXEBSTATUS=EB-FINISHED; KXID=def", true, "KXEBID=abc;KXID=def;"},
      {"KXEBID=abc; KXEBSTATUS=EB-FINISHED", false, ""},
      {"KXEBSTATUS=EB-FINISHED; KXID=def", false, ""},
      {"KXEBID=abc; KXEBSTATUS=EB-HC-NEEDED:7", true, "KXEBID=abc;KXEBSTATUS=EB-HC-NEEDED:7;"},
      {"KXEBID=abc; KXEBSTATUS=EB-HC-FAILED", true, "KXEBID=abc;KXEBSTATUS=EB-HC-FAILED;"},
      {"KXEBID=abc; KXEBSTATUS=eb-hc-failed", false, ""},
      // Finished counts before the host check, as long as there is a session to hand back.
      {"KXEBSTATUS=EB-FINISHED; KXEBID=a; KXEBSTATUS=EB-HC-NEEDED; KXID=d", true,
       "KXEBID=a;KXID=d;"},
      {"KXEBSTATUS=EB-FINISHED; KXEBID=a; KXEBSTATUS=EB-HC-NEEDED", true,
       "KXEBID=a;KXEBSTATUS=EB-HC-NEEDED;"},
      // The last entry with a marker is the status, even for the outcome of another one.
      {"KXEBID=a; KXEBSTATUS=EB-HC-NEEDED; KXEBSTATUS=EB-HC-FAILED", true,
       "KXEBID=a;KXEBSTATUS=EB-HC-FAILED;"},
      {"KXEBID=a; KXEBSTATUS=EB-HC-NEEDED EB-FINISHED; KXID=d", true, "KXEBID=a;KXID=d;"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.cookies);
    auto session = Make<CefCustomSignInLogin>(kUrl, "");
    Start(session.get());
    EXPECT_EQ(session->ProcessCookieResponse("https://anywhere/", c.cookies), c.finished);
    EXPECT_EQ(session->GetReturnData().postAuthCookie, c.result);
  }
}

}  // namespace
