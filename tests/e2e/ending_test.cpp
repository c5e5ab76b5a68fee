// Steps that do not come to their own end: the user, the caller, or a part of them breaks off.

#include <signal.h>

#include <thread>

#include "tests/e2e/E2eTest.h"

namespace {

using testing::HasSubstr;

constexpr char kCookie[] = "KXSAMLEMBID=launch";
constexpr char kFormTitle[] = "Sign in to your account";
constexpr char kEmptyDocument[] =
    R"({"postauthcookie":"","samlidpcookies":"","samlidplogoutrequesturl":"","samlslostate":0})";

class EndingTest : public E2eTest {
 protected:
  Subprocess::Command NeverSignsIn(std::vector<std::string> options = {}) const {
    return StarterCommand({"saml-login", "/saml/never", kCookie, false, std::move(options)});
  }
  void WaitForForm() {
    ASSERT_NE(display_->WaitForWindow(kFormTitle, kPatience), "") << "no sign-in window";
  }
};

TEST_F(EndingTest, UserClosesTheWindow) {
  Subprocess starter(NeverSignsIn());
  WaitForForm();
  EXPECT_EQ(display_->Run({"wmctrl", "-c", kFormTitle}).status, 0);
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.verdict, "closed by user") << report.log;
  EXPECT_EQ(report.slo_state, 0) << "an empty result is written all the same";
  EXPECT_THAT(report.log, HasSubstr("Calling CefQuitMessageLoop"));
}

TEST_F(EndingTest, TimeLimitEndsTheStepInOrder) {
  const StarterReport report =
      Run({"saml-login", "/saml/never", kCookie, false, {"--timeout", "4"}});
  EXPECT_EQ(report.verdict, "timed out") << report.log;
  EXPECT_EQ(report.helper_exit_status, 0);
  EXPECT_THAT(report.log, HasSubstr("Handling the Signal:15 received"));
}

class SignalTest : public EndingTest, public testing::WithParamInterface<int> {};

TEST_P(SignalTest, WhileThePageIsShown) {
  Subprocess program(DirectCommand(Request("/saml/never")));
  WaitForForm();
  program.Signal(GetParam());
  const DirectReport report = DirectEnd(program, DataFolder());
  EXPECT_EQ(report.exit_status, 0) << report.log;
  EXPECT_EQ(report.document, kEmptyDocument);
  EXPECT_THAT(report.log,
              HasSubstr("Handling the Signal:" + std::to_string(GetParam()) + " received"));
}

TEST_P(SignalTest, InTheFirstMoments) {
  for (const int milliseconds : {0, 30, 100, 250, 500}) {
    Subprocess program(DirectCommand(Request("/saml/never")));
    ASSERT_TRUE(WaitForLog(program.pid(), "got client"));
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    program.Signal(GetParam());
    const DirectReport report = DirectEnd(program, DataFolder());
    EXPECT_EQ(report.exit_status, 0) << milliseconds << " ms\n" << report.log;
    EXPECT_EQ(report.signal, 0);
    EXPECT_EQ(report.document, kEmptyDocument);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, SignalTest, testing::Values(SIGHUP, SIGINT, SIGTERM), [](const auto& info) {
      return std::string(info.param == SIGHUP ? "Hup" : info.param == SIGINT ? "Int" : "Term");
    });

TEST_F(EndingTest, CookiesGatheredBeforeASignalAreHandedBack) {
  Subprocess program(DirectCommand(Request("/saml/never")));
  WaitForForm();
  // A wrong password: the form comes again, and with its request the provider's cookies.
  display_->Xdotool({"type", "--delay", "20", "ada\twrong\n"});
  ASSERT_TRUE(WaitForLog(program.pid(), "/sso/never/sign-in"));
  program.Signal(SIGTERM);
  const DirectReport report = DirectEnd(program, DataFolder());
  EXPECT_THAT(report.document, HasSubstr("\"samlidpcookies\":\"IDPSESSION="));
}

TEST_F(EndingTest, SecondSignInWhileOneRuns) {
  Subprocess first(NeverSignsIn());
  WaitForForm();
  const StarterReport second = Run({"saml-login", "/saml/ok?auto=1", kCookie, false, {}});
  EXPECT_EQ(second.verdict, "signed in") << second.log;
  EXPECT_FALSE(first.Wait(std::chrono::milliseconds(0))) << "the first one goes on";
  first.Signal(SIGTERM);
  EXPECT_EQ(Report(first).verdict, "stopped");
}

TEST_F(EndingTest, BrowserKilledInTheMiddle) {
  Subprocess starter(NeverSignsIn());
  WaitForForm();
  const pid_t browser = BrowserProcess();
  ASSERT_GT(browser, 0);
  kill(browser, SIGKILL);
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.verdict, "closed by user") << report.log;
  EXPECT_EQ(report.helper_exit_status, 0);
}

TEST_F(EndingTest, ProgramKilledLeavesNothing) {
  Subprocess program(DirectCommand(Request("/saml/never")));
  WaitForForm();
  program.Signal(SIGKILL);
  const DirectReport report = DirectEnd(program, DataFolder());
  EXPECT_EQ(report.signal, SIGKILL);
  EXPECT_EQ(report.document, "");
}

TEST_F(EndingTest, KilledStarterEndsTheStep) {
  Subprocess starter(NeverSignsIn());
  WaitForForm();
  const pid_t helper = HelperProcess();
  ASSERT_GT(helper, 0);
  starter.Signal(SIGKILL);
  ASSERT_TRUE(EndsWithin(helper, kPatience));
  EXPECT_EQ(DirectEnd(starter, DataFolder()).document, kEmptyDocument);
}

}  // namespace
