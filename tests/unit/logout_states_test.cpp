// The states of a single logout, against a model written as the table of transitions.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GUI/newUI/CommonWebBrowser.h"
#include "tests/support/LogTrace.h"

namespace {

// What matters of an address.
enum : unsigned { kBlank = 1, kOnGateway = 2, kLogout = 4 };
enum : unsigned { kRequest = 8, kResponse = 16, kWelcome = 32, kEnd = 64 };

std::wstring Address(unsigned marks) {
  std::wstring url = marks & kOnGateway ? L"https://gw.example:8443/" : L"https://idp.example/";
  if (marks & kLogout) url += L"vora-na/auth/logout.cgi";
  url += L"?";
  if (marks & kRequest) url += L"SAMLRequest=x&";
  if (marks & kResponse) url += L"SAMLResponse=x&";
  if (marks & kWelcome) url += L"to=welcome.cgi&";
  if (marks & kBlank) url += L"about:blank";
  return url;
}

int ModelStep(int state, bool host, unsigned marks) {
  const struct {
    int from;  // -1: any
    bool on_gateway, without_host_too;
    unsigned mark;  // 0: none needed
    int to;
  } transitions[] = {{0, true, true, kLogout, 1},
                     {1, false, false, 0, 2},
                     {-1, false, true, kRequest, 3},
                     {3, false, false, kResponse, 4},
                     {4, false, false, kWelcome, 5}};
  if (marks & kBlank) return state;
  const bool on_gateway = (marks & kOnGateway) != 0;
  for (const auto& t : transitions) {
    const bool place = host ? on_gateway == t.on_gateway : t.without_host_too;
    if ((t.from == -1 || t.from == state) && place && (t.mark == 0 || (marks & t.mark))) {
      return t.to;
    }
  }
  return state;
}

CSLOIdpLogoutHelper Helper(bool host) {
  CSLOIdpLogoutHelper helper;
  if (host) helper.SetHostname(std::string("GW.Example:8443"));
  return helper;
}

TEST(LogoutStates, EveryStateAndEveryAddress) {
  for (const bool host : {false, true}) {
    for (int state = 0; state <= 5; ++state) {
      for (unsigned marks = 0; marks < kEnd; ++marks) {
        CSLOIdpLogoutHelper helper = Helper(host);
        helper.m_state = state;
        helper.UpdateState(Address(marks));
        SCOPED_TRACE(std::to_string(state) + (host ? " with host " : " without host ") +
                     std::to_string(marks));
        EXPECT_EQ(helper.m_state, ModelStep(state, host, marks));
        const bool captures = state == 1 && helper.m_state == 2;
        EXPECT_EQ(helper.m_samlIdpLogoutRequestUrl, captures ? Address(marks) : L"");
      }
    }
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
  CSLOIdpLogoutHelper helper = Helper(true);
  helper.UpdateState(L"https://idp/");
  helper.UpdateState(L"https://idp/?x=about:blank&SAMLRequest=1");
  helper.UpdateState(L"https://idp/?SAMLRequest=1");
  EXPECT_THAT(log.Take(),
              testing::ElementsAre("3 'OrbUI' SAML SLO URL: https://idp/ State:0",
                                   "3 'OrbUI' SAML SLO URL: https://idp/?SAMLRequest=1 State:3"));
}

}  // namespace
