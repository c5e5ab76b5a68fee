// What a step brings along and what it leaves to the next one.

#include "tests/e2e/E2eTest.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;

constexpr char kSaml[] = "KXOTHER=1; KXSAMLEMBID=launch";
constexpr char kCustom[] = "KXEBID=launch; KXEBSTATUS=EB-LAUNCH";
constexpr char kLogout[] = "KXID=launch;; KXFIRST=a=b";
constexpr char kSamlPath[] = "/saml-redirect/start?auto=1";

TEST_F(E2eTest, PlantedCookiesAndUserAgentReachTheGateway) {
  Run({"saml-login", kSamlPath, "KXODD=\xE9; KXSAMLEMBID=launch", false, {}});  // no UTF-8
  EXPECT_THAT(CookiesSentTo("/saml-redirect/start"), Contains(HasSubstr("KXSAMLEMBID=launch")));
  for (const RecordedRequest& request : box_->requests()) {
    EXPECT_EQ(request.user_agent,
              "Mozilla/5.0 (X11; Linux x86_64) Firefox/60 AppleWebKit/537.36 (KHTML, like Gecko) "
              "Chrome/80.0.3987.149 Safari/537.36 CorvaneWebClient")
        << request.target;
  }
  Run({"custom", "/custom-finished/start?auto=1", kCustom, false, {}});
  EXPECT_THAT(CookiesSentTo("/custom-finished/start"),
              Contains(AllOf(HasSubstr("KXEBID=launch"), HasSubstr("KXEB-CLEAR=1"),
                             HasSubstr("KXEBSTATUS=EB-LAUNCH"))));
  // So many that the window is there first: the page has to wait for the last one.
  std::string many = kLogout;
  for (int i = 0; i < 1500; ++i) many += ";;A=" + std::to_string(i);
  Run({"saml-logout", "/logout-state5/start", many, false, {}});
  EXPECT_THAT(CookiesSentTo("/logout-state5/start"),
              Contains(AllOf(HasSubstr("KXID=launch"), HasSubstr("KXFIRST=a=b"))));
}

// The identity provider knows the user again, until a sign-in asks to forget all cookies.
TEST_F(E2eTest, IdentityProviderCookiesStayUntilTheyAreCleared) {
  const Step step{"saml-login", kSamlPath, kSaml, false, {}};
  const auto sent = [this] { return CookiesSentTo("/saml-redirect/sso?").back(); };
  Run(step);
  EXPECT_EQ(sent(), "");
  EXPECT_EQ(Run(step).verdict, "signed in");
  EXPECT_THAT(sent(), HasSubstr("IDPDEVICE=box"));
  EXPECT_THAT(ReadFile(DataFolder() + "cef/Default/Preferences"),
              HasSubstr("\"exit_type\":\"Normal\""))
      << "the browser was killed";
  Step clearing = step;
  clearing.options = {"--clear-cookies", Address("/slo")};
  EXPECT_EQ(Run(clearing).verdict, "signed in");
  EXPECT_EQ(sent(), "");
}

// A caller in another language, written from the description of the interface alone.
TEST_F(E2eTest, DescribedInterfaceIsEnoughForACaller) {
  Subprocess::Command caller;
  caller.arguments = {EB_PYTHON, EB_CALLER, EB_PROGRAM, "saml-login", Address(kSamlPath), "45"};
  caller.environment = {{"HOME", home_.path()}, {"TMPDIR", home_.file("tmp")}};
  caller.input = kSaml;
  std::filesystem::remove(DataFolder());
  const Subprocess::End signed_in = RunToEnd(caller, kPatience);
  EXPECT_THAT(signed_in.out, AllOf(HasSubstr("\"postauthcookie\": \"KXSAMLEBSTATEID="),
                                   HasSubstr("IDPSESSION="), HasSubstr("\"samlslostate\": 0")))
      << signed_in.err;
  caller.arguments[4] = Address("/saml-never/start?auto=1");
  caller.arguments[5] = "3";
  const Subprocess::End timed_out = RunToEnd(caller, kPatience);
  EXPECT_THAT(timed_out.out, HasSubstr("\"postauthcookie\": \"\"")) << timed_out.err;
  EXPECT_EQ(timed_out.exit_status, 0);
}

}  // namespace
