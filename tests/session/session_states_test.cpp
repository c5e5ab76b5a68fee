// All sequences of a few responses, cookies and addresses, each step held against the rules as a
// table says them.

#include <cstring>
#include <functional>
#include <iostream>
#include <utility>

#include "GUI/cefBrowser/CefCustomSignInLogin.h"
#include "GUI/cefBrowser/CefSAMLLogin.h"
#include "GUI/cefBrowser/CefSAMLLogout.h"
#include "libs/kxaccess/utf8.h"
#include "tests/session/SessionTest.h"

namespace {

// Calls `step` for each symbol behind each sequence of fewer than `depth`, with the state that the
// sequence has led to; `step` changes the state. Stops at the first failure.
template <class State>
void ForAllSequences(int depth, int symbols, const State& state,
                     const std::function<void(State&, int)>& step, long& steps) {
  for (int symbol = 0; symbol < symbols && !testing::Test::HasFailure(); ++symbol) {
    SCOPED_TRACE(symbol);
    State next = state;
    step(next, symbol);
    ++steps;
    if (depth > 1) ForAllSequences(depth - 1, symbols, next, step, steps);
  }
}

class SessionStates : public SessionTest {
 protected:
  template <class State>
  void Explore(int depth, int symbols, const State& begin,
               const std::function<void(State&, int)>& step) {
    long steps = 0;
    ForAllSequences(depth, symbols, begin, step, steps);
    EXPECT_GT(steps, 100000);
    std::cout << symbols << " symbols, depth " << depth << ": " << steps << " sequences"
              << std::endl;
  }
};

// What stands in the session's fields is put back before each step, so that a session which keeps
// anything else goes astray.
TEST_F(SessionStates, SamlLoginGathersAndEndsByItsRules) {
  const struct Response {
    const char* url;
    const char* cookies;
    const char* foreign;  // its host, when that is not the gateway's
    const char* state;    // the state cookie
    bool signed_in;
  } responses[] = {
      {"https://vpn.example/sign-in", "KXSAMLEMBID=a", "", "", false},
      {"https://vpn.example/done", "KXSAMLEBSTATUS=1", "", "", false},
      {"https://vpn.example/done", "KXSAMLEBSTATEID=s", "", "KXSAMLEBSTATEID=s", false},
      {"https://VPN.example/done", "KXSAMLEBSTATEID=s; KXSAMLEBSTATUS=1", "", "KXSAMLEBSTATEID=s",
       true},
      {"https://vpn.example", "KXSAMLEBSTATUS=1; a=1; KXSAMLEBSTATEID=t", "", "KXSAMLEBSTATEID=t",
       true},
      {"https://vpn.example/", "KXSAMLEBSTATUS=11; KXSAMLEBSTATEID=t", "", "KXSAMLEBSTATEID=t",
       false},
      {"https://www.vpn.example/", "KXSAMLEBSTATEID=s; KXSAMLEBSTATUS=1", "www.vpn.example", "",
       false},
      {"https://vpn.example:8443/", "KXSAMLEBSTATEID=s; KXSAMLEBSTATUS=1", "vpn.example:8443", "",
       false},
      {"https://idp.example/login", "idp=1", "idp.example", "", false},
      {"https://idp.example/login", "", "idp.example", "", false},
      {"https://third.example/", "third=1", "third.example", "", false},
  };
  struct State {
    std::string provider, gathered, post;
  };
  const auto session = Make<CefSAMLLogin>("https://vpn.example/sign-in", "");
  Start(session.get());
  Explore<State>(6, std::size(responses), {}, [&](State& state, int symbol) {
    const Response& response = responses[symbol];
    EmbBrowserReturnData& data = session->GetReturnData();
    session->_urlIdpHost = state.provider;
    data.samlIdpCookies = state.gathered;
    data.postAuthCookie = state.post;
    const bool ends = session->ProcessCookieResponse(response.url, response.cookies);
    cef.ClearTrace();

    const bool foreign = *response.foreign != '\0';
    if (foreign && state.provider.empty()) {
      state.provider = response.foreign;
    } else if (foreign && state.provider == response.foreign) {
      state.gathered = response.cookies;
    }
    if (response.signed_in) state.post = response.state;
    EXPECT_EQ(ends, *response.state != '\0') << response.url << response.cookies;
    EXPECT_EQ(session->_urlIdpHost, state.provider);
    EXPECT_EQ(data.samlIdpCookies, state.gathered);
    EXPECT_EQ(data.postAuthCookie, state.post);
  });
}

// The sequences are those of the cookies within a response. What an earlier response has left is
// kept, and has no influence.
TEST_F(SessionStates, CustomSignInJudgesEachResponseByItself) {
  const struct Cookie {
    const char* text;
    const char* kept;  // as a status, without blanks
    bool finished, needed, failed;
  } cookies[] = {
      {"KXEBID=a", nullptr, false, false, false},
      {"KXID=d", nullptr, false, false, false},
      {"KXEBSTATUS=EB-FINISHED", "KXEBSTATUS=EB-FINISHED", true, false, false},
      {"KXEBSTATUS=EB-HC-NEEDED:7", "KXEBSTATUS=EB-HC-NEEDED:7", false, true, false},
      {"KXEBSTATUS=EB-HC-FAILED", "KXEBSTATUS=EB-HC-FAILED", false, false, true},
      {"KXEBSTATUS=EB-FINISHED EB-HC-FAILED", "KXEBSTATUS=EB-FINISHEDEB-HC-FAILED", true, false,
       true},
      {"KXEBSTATUS=EB-LAUNCH eb-finished", nullptr, false, false, false},
      {"other=EB-HC-NEEDED", nullptr, false, false, false},
  };
  struct State {
    std::string text, status;
    bool id = false, session = false, finished = false, needed = false, failed = false;
  };
  const auto session = Make<CefCustomSignInLogin>("https://vpn.example/", "");
  Start(session.get());
  std::string result;
  Explore<State>(6, std::size(cookies), {}, [&](State& state, int symbol) {
    const Cookie& cookie = cookies[symbol];
    if (!state.text.empty()) state.text += "; ";
    state.text += cookie.text;
    state.id |= symbol == 0;
    state.session |= symbol == 1;
    state.finished |= cookie.finished;
    state.needed |= cookie.needed;
    state.failed |= cookie.failed;
    if (cookie.kept) state.status = cookie.kept;

    bool ends = state.id;
    if (state.id && state.finished && state.session) {
      result = "KXEBID=a;KXID=d;";
    } else if (state.id && (state.needed || state.failed)) {
      result = "KXEBID=a;" + state.status + ";";
    } else {
      ends = false;
    }
    EXPECT_EQ(session->ProcessCookieResponse("https://anywhere/", state.text), ends) << state.text;
    EXPECT_EQ(session->GetReturnData().postAuthCookie, result) << state.text;
  });
}

// Where an address lies, and the marks in it: L logout page, Q request, A answer, W welcome page, B
// blank page.
struct Address {
  const wchar_t* url;
  bool gateway;
  const char* marks;
};

const Address kAddresses[] = {
    {L"https://vpn.example/vora-na/auth/logout.cgi", true, "L"},
    {L"https://vpn.example/?SAMLRequest&SAMLResponse&welcome.cgi", true, "QAW"},
    {L"https://vpn.example.evil/vora-na/auth/logout.cgi?about:blank", true, "LB"},
    {L"https://idp.example/?to=https://vpn.example/welcome.cgi", true, "W"},
    {L"https://www.vpn.example/vora-na/auth/logout.cgi", false, "L"},
    {L"https://VPN.example/?SAMLResponse", false, "A"},
    {L"https://idp.example/\u00e9", false, ""},
    {L"https://idp.example/?SAMLRequest", false, "Q"},
    {L"https://idp.example/?SAMLRequest&SAMLResponse", false, "QA"},
    {L"https://third.example/?to=welcome.cgi", false, "W"},
};

// The first rule that fits decides.
const struct Rule {
  int from;                    // -1: any
  bool on, off, without_host;  // the gateway, for which addresses it holds
  char mark;                   // 0: none is needed
  int to;                      // -1: as it was
} kRules[] = {
    {-1, true, true, true, 'B', -1}, {0, true, false, true, 'L', 1},
    {1, false, true, false, 0, 2},   {-1, false, true, true, 'Q', 3},
    {3, false, true, false, 'A', 4}, {4, false, true, false, 'W', 5},
};

int StateAfter(int state, const Address& address, bool has_host) {
  for (const Rule& rule : kRules) {
    const bool side = !has_host ? rule.without_host : address.gateway ? rule.on : rule.off;
    const bool mark = rule.mark == 0 || strchr(address.marks, rule.mark) != nullptr;
    if (side && mark && (rule.from == -1 || rule.from == state)) {
      return rule.to == -1 ? state : rule.to;
    }
  }
  return state;
}

TEST_F(SessionStates, SamlLogoutFollowsAddressesByItsRules) {
  struct State {
    int state = 0;
    const Address* request = nullptr;
    int result_state = 0;
    const Address* result_request = nullptr;
  };
  const auto wide = [](const Address* address) { return address ? address->url : L""; };
  for (const bool has_host : {true, false}) {
    const auto session = Make<CefSAMLLogout>("https://VPN.example/", "");
    if (has_host) Start(session.get());
    Explore<State>(6, std::size(kAddresses), {}, [&](State& state, int symbol) {
      const Address& address = kAddresses[symbol];
      CSLOIdpLogoutHelper& helper = session->m_logoutHelper;
      EmbBrowserReturnData& data = session->GetReturnData();
      helper.m_state = state.state;
      helper.m_samlIdpLogoutRequestUrl = wide(state.request);
      data.samlSloState = state.result_state;
      data.samlIdpLogoutRequestUrl = WideToUtf8(wide(state.result_request));
      const bool ends = session->CheckIfCompleted(address.url);

      const int before = std::exchange(state.state, StateAfter(state.state, address, has_host));
      if (before == 1 && state.state == 2) state.request = &address;
      const bool over = state.state == 2 || state.state == 5;
      if (over) {
        state.result_state = state.state;
        state.result_request = state.request;
      }
      EXPECT_EQ(ends, over) << before << address.url;
      EXPECT_EQ(helper.m_state, state.state) << before << address.url;
      EXPECT_EQ(data.samlSloState, state.result_state);
      EXPECT_EQ(data.samlIdpLogoutRequestUrl, WideToUtf8(wide(state.result_request)));
    });
  }
}

}  // namespace
