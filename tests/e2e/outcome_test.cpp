// Each outcome of each kind of step, from the launch request to the caller's verdict.

#include "tests/e2e/E2eTest.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr char kToken[] = "[0-9a-f]{32}";

struct Outcome {
  const char* name;
  const char* type;
  const char* path;
  const char* cookie;
  bool https;
  int status;
  const char* post_auth_cookie;  // a pattern; %s stands for one of the box's tokens
  const char* idp_cookies;
  int slo_state;
};

void PrintTo(const Outcome& outcome, std::ostream* out) { *out << outcome.name; }

std::string Pattern(std::string text) {
  for (size_t at; (at = text.find("%s")) != std::string::npos;) text.replace(at, 2, kToken);
  return text;
}

class OutcomeTest : public E2eTest, public testing::WithParamInterface<Outcome> {};

TEST_P(OutcomeTest, ReachesTheCaller) {
  const Outcome& expected = GetParam();
  if (expected.https) TrustBox();
  const StarterReport report = Run({expected.type,
                                    std::string(expected.path) + "?auto=1",
                                    expected.cookie,
                                    expected.https,
                                    {"--timeout", "45"}});
  EXPECT_EQ(report.exit_status, expected.status) << report.verdict << "\n" << report.log;
  EXPECT_THAT(report.post_auth_cookie, MatchesRegex(Pattern(expected.post_auth_cookie)));
  EXPECT_THAT(report.idp_cookies, MatchesRegex(Pattern(expected.idp_cookies)));
  EXPECT_EQ(report.slo_state, expected.slo_state);
  EXPECT_EQ(report.helper_exit_status, 0);
}

constexpr char kSaml[] = "KXOTHER=1; KXSAMLEMBID=launch";
constexpr char kCustom[] = "KXEBID=launch; KXEBSTATUS=EB-LAUNCH";
constexpr char kLogout[] = "KXID=launch;; KXSECOND=a=b";
constexpr char kIdp[] = "IDPSESSION=%s; IDPLANG=en; IDPDEVICE=box";

INSTANTIATE_TEST_SUITE_P(
    All, OutcomeTest,
    testing::Values(
        Outcome{"SamlOk", "saml-login", "/saml/ok", kSaml, false, 0, "KXSAMLEBSTATEID=%s", kIdp, 0},
        Outcome{"SamlOkHttps", "saml-login", "/saml/ok", kSaml, true, 0, "KXSAMLEBSTATEID=%s", kIdp,
                0},
        Outcome{"SamlPosted", "saml-login", "/saml/post", kSaml, false, 0, "KXSAMLEBSTATEID=%s",
                kIdp, 0},
        Outcome{"SamlSlow", "saml-login", "/saml/slow", kSaml, false, 0, "KXSAMLEBSTATEID=%s", kIdp,
                0},
        Outcome{"SamlRefused", "saml-login", "/saml/refused", kSaml, false, 3, "", kIdp, 0},
        Outcome{"CustomFinished", "custom", "/custom/finished", kCustom, false, 0,
                "KXEBID=launch;KXID=%s;", "", 0},
        Outcome{"CustomCheckNeeded", "custom", "/custom/hc-needed", kCustom, false, 4,
                "KXEBID=launch;KXEBSTATUS=EB-HC-NEEDED;", "", 0},
        Outcome{"CustomCheckFailed", "custom", "/custom/hc-failed", kCustom, false, 5,
                "KXEBID=launch;KXEBSTATUS=EB-HC-FAILED;", "", 0},
        Outcome{"CustomInvalidFirst", "custom", "/custom/invalid-first", kCustom, false, 0,
                "KXEBID=launch;KXID=%s;", "", 0},
        Outcome{"LogoutState2", "saml-logout", "/logout/state2", kLogout, true, 6, "", "", 2},
        Outcome{"LogoutState5", "saml-logout", "/logout/state5", kLogout, false, 6, "", "", 5},
        Outcome{"LogoutState5Https", "saml-logout", "/logout/state5", kLogout, true, 6, "", "", 5}),
    [](const auto& info) { return info.param.name; });

TEST_F(E2eTest, PlantedCookiesAndUserAgentReachTheGateway) {
  Run({"saml-login", "/saml/ok?auto=1", kSaml, false, {}});
  EXPECT_THAT(CookiesSentTo("/saml/ok?"), Contains("KXSAMLEMBID=launch"));
  for (const RecordedRequest& request : box_->requests()) {
    EXPECT_EQ(request.user_agent,
              "Mozilla/5.0 (X11; Linux x86_64) Firefox/60 AppleWebKit/537.36 (KHTML, like Gecko) "
              "Chrome/80.0.3987.149 Safari/537.36 CorvaneWebClient")
        << request.target;
  }
  Run({"custom", "/custom/finished?auto=1", kCustom, false, {}});
  EXPECT_THAT(CookiesSentTo("/custom/finished?"),
              Contains(testing::AllOf(HasSubstr("KXEBID=launch"), HasSubstr("KXEB-CLEAR=1"),
                                      HasSubstr("KXEBSTATUS=EB-LAUNCH"))));
  Run({"saml-logout", "/logout/state5", kLogout, false, {}});
  EXPECT_THAT(CookiesSentTo("/logout/state5"),
              Contains(testing::AllOf(HasSubstr("KXID=launch"), HasSubstr("KXSECOND=a=b"))));
}

TEST_F(E2eTest, LogoutHandsBackTheAddressToContinueAt) {
  TrustBox();
  const StarterReport report = Run({"saml-logout", "/logout/state2", kLogout, true, {}});
  EXPECT_THAT(report.logout_url, MatchesRegex("https://idp\\.localhost:[0-9]+/slo/state2\\?"
                                              "SAMLRequest=[^&]*&RelayState=box"));
  EXPECT_EQ(report.detail, "state 2, continue at " + report.logout_url);
}

// The identity provider knows the user again, until a sign-in asks to forget all cookies.
TEST_F(E2eTest, IdentityProviderCookiesStayUntilTheyAreCleared) {
  const Step step{"saml-login", "/saml/ok?auto=1", kSaml, false, {}};
  const auto sent = [this] { return CookiesSentTo("/sso/ok?").back(); };
  Run(step);
  EXPECT_EQ(sent(), "");
  EXPECT_EQ(Run(step).verdict, "signed in");
  EXPECT_THAT(sent(), HasSubstr("IDPDEVICE=box"));
  Step clearing = step;
  clearing.options = {"--clear-cookies", Address("/slo")};
  EXPECT_EQ(Run(clearing).verdict, "signed in");
  EXPECT_EQ(sent(), "");
}

class CertificateTest : public E2eTest {
 protected:
  // A sign-in over HTTPS whose gateway certificate nobody knows; the key answers the question.
  StarterReport Answer(const std::string& key) {
    GatewayBox::Options options;
    options.certificate = CertificateKind::kUnknownAuthority;
    options.certificate_for = "gateway";
    box_ = std::make_unique<GatewayBox>(options);
    TrustBox();
    Subprocess starter(
        StarterCommand({"saml-login", "/saml/ok?auto=1", kSaml, true, {"--timeout", "45"}}));
    EXPECT_NE(display_->WaitForWindow("^Alert$", kPatience), "") << "no question";
    display_->Xdotool({"key", key});
    return Report(starter);
  }
};

TEST_F(CertificateTest, AcceptedLeadsOn) {
  const StarterReport report = Answer("Return");
  EXPECT_EQ(report.verdict, "signed in") << report.log;
}

TEST_F(CertificateTest, RefusedEndsTheStep) {
  const StarterReport report = Answer("Escape");
  EXPECT_EQ(report.verdict, "closed by user") << report.log;
  EXPECT_THAT(report.log, HasSubstr("closing the browser because of certificate warning"));
  EXPECT_TRUE(CookiesSentTo("/saml/ok").empty());
}

}  // namespace
