// Pages that nobody here wrote: what they do must not cost the step, the machine or a later run.

#include <signal.h>

#include <fstream>

#include "tests/e2e/E2eTest.h"

namespace {

using testing::HasSubstr;

constexpr char kCookie[] = "KXSAMLEMBID=launch";
// The program takes some 55 MB by itself. Without its bounds it took 95 MB under a flood and 588 MB
// with a large form.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long kMostKilobytes = 4l << 20;  // what a sanitizer takes says nothing
#else
constexpr long kMostKilobytes = 80 * 1024;
#endif

class HostilePageTest : public E2eTest {
 protected:
  Subprocess::Command SignsInAt(const std::string& scenario, bool by_itself, bool https = false) {
    return StarterCommand({"saml-login",
                           "/" + scenario + "/start" + (by_itself ? "?auto=1" : ""),
                           kCookie,
                           https,
                           {}});
  }
  // The most memory that the program has used so far.
  static long PeakKilobytes(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
      if (line.rfind("VmHWM:", 0) == 0) return std::stol(line.substr(6));
    }
    return -1;
  }
};

TEST_F(HostilePageTest, ACookieThatIsNoTextSpoilsNoLaterRun) {
  for (const char* run : {"the one that gets it", "the one that finds it"}) {
    Subprocess starter(SignsInAt("saml-odd-cookie", true));
    const StarterReport report = Report(starter);
    EXPECT_EQ(report.verdict, "signed in") << run << "\n" << report.log << report.err;
  }
  EXPECT_THAT(CookiesSentTo("/saml-odd-cookie/discovery").back(), HasSubstr("ODD="));
}

class FloodTest : public HostilePageTest, public testing::WithParamInterface<bool> {};

// A console that is filled without end, also while the user is asked a question and nothing takes
// its lines.
TEST_P(FloodTest, OfTheConsoleTakesNoMemoryAndEndsWithTheStep) {
  const bool question = GetParam();
  if (question) TrustBox();
  Subprocess starter(
      SignsInAt(question ? "certificate-under-flood" : "saml-console-flood", false, question));
  ASSERT_NE(
      display_->WaitForWindow(question ? kQuestionTitle : "Sign in to your account", kPatience),
      "");
  const pid_t program = HelperProcess();
  EXPECT_FALSE(EndsWithin(program, std::chrono::seconds(6)));
  const long peak = PeakKilobytes(program);
  RecordProperty("peak_kilobytes", std::to_string(peak));
  EXPECT_GT(peak, 0);
  EXPECT_LT(peak, kMostKilobytes);
  const auto begin = std::chrono::steady_clock::now();
  starter.Signal(SIGTERM);
  const StarterReport report = Report(starter);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5 * EB_SLOWNESS));
  EXPECT_EQ(report.verdict, "stopped") << report.log;
  EXPECT_EQ(report.helper_exit_status, 0);
  EXPECT_EQ(report.slo_state, 0) << "the result is written";
}

INSTANTIATE_TEST_SUITE_P(All, FloodTest, testing::Bool(),
                         [](const auto& info) { return info.param ? "UnderAQuestion" : "Alone"; });

TEST_F(HostilePageTest, ALargeFormTakesNoMemory) {
  Subprocess starter(SignsInAt("saml-large-post", true));
  ASSERT_TRUE(WaitForRequest("/saml-large-post/large"));
  const long peak = PeakKilobytes(HelperProcess());
  RecordProperty("peak_kilobytes", std::to_string(peak));
  EXPECT_GT(peak, 0);
  EXPECT_LT(peak, kMostKilobytes);
  EXPECT_EQ(Report(starter).verdict, "signed in");
}

}  // namespace
