#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GUI/newUI/CommonWebBrowser.h"
#include "tests/support/LogTrace.h"

namespace {

TEST(LogoutStates, HostIsKeptInLowerCaseBehindOneScheme) {
  CSLOIdpLogoutHelper helper;
  helper.SetHostname(std::string("HTTPS://Gw"));
  EXPECT_EQ(helper.m_hostname, L"https://gw");
  helper.SetHostname(std::wstring(L"Two"));
  EXPECT_EQ(helper.m_hostname, L"https://gwtwo");
  // Addresses are compared as they come: capitals are another host.
  helper.UpdateState(L"https://GWtwo/vora-na/auth/logout.cgi");
  EXPECT_EQ(helper.m_state, 0);
}

TEST(LogoutStates, EveryStepIsLoggedButBlankPages) {
  LogTrace log;
  CSLOIdpLogoutHelper helper;
  helper.UpdateState(L"https://idp/?x=about:blank&SAMLRequest=1");
  helper.UpdateState(L"https://idp/?SAMLRequest=1");
  EXPECT_THAT(log.Take(),
              testing::ElementsAre("3 'OrbUI' SAML SLO URL: https://idp/?SAMLRequest=1 State:3"));
}

}  // namespace
