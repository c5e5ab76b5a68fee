#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GUI/newUI/CommonWebBrowser.h"
#include "tests/support/LogTrace.h"

namespace {

TEST(LogoutStates, EachGoesOnByItsOwnAddressOnly) {
  const std::wstring page = L"vora-na/auth/logout.cgi", request = L"?SAMLRequest=x",
                     response = L"?SAMLResponse=x", welcome = L"?to=welcome.cgi";
  const std::wstring gateway = L"https://gw.example:8443/", idp = L"https://idp.example/";
  const struct {
    bool host;
    int from;
    std::wstring url;
    int to;
  } steps[] = {
      {true, 0, gateway + page, 1},
      {true, 0, idp + page, 0},
      {true, 0, gateway + request, 0},
      {true, 0, idp + request, 3},
      {true, 0, idp + L"about:blank" + request, 0},
      {true, 1, gateway + page, 1},
      {true, 1, gateway + request, 1},
      {true, 1, idp, 2},
      {true, 1, idp + request, 2},  // leaving counts before what it leads to
      {true, 2, idp + request, 3},
      {true, 2, gateway + page, 2},
      {true, 3, gateway + response, 3},
      {true, 3, idp + response, 4},
      {true, 3, idp + welcome, 3},
      {true, 3, idp + request + response, 3},
      {true, 4, gateway + welcome, 4},
      {true, 4, idp + response, 4},
      {true, 4, idp + welcome, 5},
      {true, 4, idp + request, 3},
      {true, 5, idp + welcome, 5},
      {true, 5, idp + request, 3},
      // Without a host an address is a gateway's, but for a request.
      {false, 0, idp + page, 1},
      {false, 1, idp, 1},
      {false, 1, idp + request, 3},
      {false, 3, idp + response, 3},
      {false, 4, idp + welcome, 4},
  };
  for (const auto& step : steps) {
    CSLOIdpLogoutHelper helper;
    if (step.host) helper.SetHostname(std::string("GW.Example:8443"));
    helper.m_state = step.from;
    helper.UpdateState(step.url);
    SCOPED_TRACE(testing::Message() << step.host << step.from << step.url);
    EXPECT_EQ(helper.m_state, step.to);
    EXPECT_EQ(helper.m_samlIdpLogoutRequestUrl, step.from == 1 && step.to == 2 ? step.url : L"");
  }
}

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
