#include "GUI/cefBrowser/CefSAMLLogout.h"
#include "tests/session/SessionTest.h"

namespace {

using testing::ElementsAre;

constexpr char kUrl[] = "https://VPN.example/vora-na/auth/logout.cgi";

std::string Planted(const std::string& name, const std::string& value) {
  return std::string("SetCookie(url=") + kUrl + ", name=" + name + ", value=" + value +
         ", domain=, path=/, secure=0, httponly=0)";
}

class SamlLogout : public SessionTest {};

TEST_F(SamlLogout, PlantsTheSortedBundleWithWholeValues) {
  auto session = Make<CefSAMLLogout>(kUrl, "KXID=a=b; =c;;empty=;;novalue;;A=1;;A=1");
  EXPECT_THAT(Start(session.get()),
              ElementsAre("CreateContext(handler=yes)", "DeleteCookies(url=, name=)",
                          Planted("A", "1"), Planted("KXID", "a=b;=c"), Planted("empty", ""),
                          std::string("VisitUrlCookies(url=") + kUrl + ", includeHttpOnly=true)",
                          std::string("CreateBrowser(url=") + kUrl + ")"));
  EXPECT_EQ(cef.createdSettings.webgl, STATE_DISABLED);
  EXPECT_EQ(session->m_logoutHelper.m_hostname, L"https://vpn.example");
}

}  // namespace
