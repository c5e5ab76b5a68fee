// Every scenario of the gateway box, through the starter and the program, with the outcome that its
// file names.

#include <poll.h>

#include <algorithm>
#include <regex>
#include <thread>

#include "tests/e2e/E2eTest.h"
#include "tools/gateway/GatewayFiles.h"
#include "tools/gateway/ScenarioList.h"
#include "tools/gateway/Scenarios.h"

// How a scenario shows in a failed test.
void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.description; }

namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

// When a deed is tried again, since windows take keys only a moment after they show. What has been
// typed takes a while to lead on.
seconds NextTry(const Hand& hand) { return seconds(hand.type.empty() ? 1 : 5); }

std::vector<Scenario> Those(bool nightly) {
  std::vector<Scenario> chosen = ReadScenarios(ScenarioFolder());
  const auto other = [nightly](const Scenario& scenario) { return scenario.nightly != nightly; };
  chosen.erase(std::remove_if(chosen.begin(), chosen.end(), other), chosen.end());
  return chosen;
}

std::string TestName(const testing::TestParamInfo<Scenario>& info) {
  std::string name;
  bool upper = true;
  for (const char c : info.param.name) {
    if (c != '-') name += upper ? static_cast<char>(std::toupper(c)) : c;
    upper = c == '-';
  }
  return name;
}

class ScenarioTest : public E2eTest, public testing::WithParamInterface<Scenario> {
 protected:
  bool IsShown(const std::string& window) const {
    return display_->Xdotool({"search", "--onlyvisible", "--name", window}).status == 0;
  }

  void Do(const Hand& hand, const std::string& id) const {
    if (hand.close) {
      display_->Run({"wmctrl", "-i", "-c", id});
    } else if (!hand.type.empty()) {
      display_->Xdotool({"type", "--delay", "20", hand.type});
    } else {
      std::vector<std::string> keys = hand.keys;
      keys.insert(keys.begin(), "key");
      display_->Xdotool(keys);
    }
  }

  // Does one thing, again and again until its window is gone or shows something else.
  void Play(const Hand& hand) const {
    const std::string id = display_->WaitForWindow(hand.window, kPatience);
    ASSERT_NE(id, "") << "no window " << hand.window;
    std::this_thread::sleep_for(seconds(hand.after));
    const auto limit = steady_clock::now() + kPatience;
    while (IsShown(hand.window)) {
      ASSERT_LT(steady_clock::now(), limit) << hand.window << " stays";
      Do(hand, id);
      const auto next = steady_clock::now() + NextTry(hand);
      while (IsShown(hand.window) && steady_clock::now() < next) poll(nullptr, 0, 50);
    }
  }

  // What the log's reader tells of the run that wrote these records.
  static std::string Story(const std::string& log) {
    std::smatch process;
    if (!std::regex_search(log, process, std::regex(" p([0-9]+) "))) return "";
    Subprocess::Command command;
    command.arguments = {EB_LOG_READER, "--explain", process[1]};
    return RunToEnd(command, kPatience).out;
  }

  static void ExpectMatch(const std::string& text, const std::string& pattern, const char* what) {
    EXPECT_TRUE(std::regex_match(text, std::regex(pattern))) << what << " is: " << text;
  }
};

TEST_P(ScenarioTest, EndsAsItsFileSays) {
  const Scenario& scenario = GetParam();
  const Expectation& expect = scenario.expect;
  if (scenario.https) TrustBox();
  const std::string address =
      StartAddress(scenario, {box_->port(), box_->https_port()}, scenario.automatic);
  Subprocess::Command command =
      StarterCommand({scenario.step,
                      "",
                      scenario.cookie,
                      scenario.https,
                      {"--url", address, "--timeout", std::to_string(scenario.timeout)}});
  if (!scenario.language.empty()) command.environment["LANGUAGE"] = scenario.language;
  Subprocess starter(command);
  for (const Hand& hand : scenario.hands) Play(hand);
  const StarterReport report = Report(starter);
  for (const std::string& refusal : box_->refusals()) ADD_FAILURE() << refusal;
  EXPECT_EQ(report.verdict, expect.verdict) << report.log << report.err;
  EXPECT_EQ(report.reason, expect.reason);
  // Nothing that is not the caller's business; of a step that succeeds, nothing at all.
  const char* const lines = expect.reason.empty() ? "" : "(cef: [^\n]*\n)?";
  ExpectMatch(report.err, lines, "standard error");
  ExpectMatch(report.post_auth_cookie, expect.post_auth_cookie, "postauthcookie");
  ExpectMatch(report.idp_cookies, expect.idp_cookies, "samlidpcookies");
  ExpectMatch(report.logout_url, expect.logout_url, "samlidplogoutrequesturl");
  EXPECT_EQ(report.slo_state, expect.slo_state);
  EXPECT_EQ(report.helper_exit_status, 0);
  // A result that lies ready until the limit comes is a fault, too.
  EXPECT_EQ(report.log.find("Handling the Signal") == std::string::npos,
            expect.verdict != "timed out");
  // An error that a file does not name is a false one.
  for (const std::string& error : ErrorsIn(report.log)) {
    EXPECT_TRUE(std::any_of(expect.log.begin(), expect.log.end(), [&](const std::string& text) {
      return error.find(text) != std::string::npos;
    })) << error;
  }
  for (const std::string& text : expect.log) EXPECT_THAT(report.log, testing::HasSubstr(text));
  EXPECT_THAT(Story(report.log), testing::HasSubstr(expect.explain));
}

INSTANTIATE_TEST_SUITE_P(All, ScenarioTest, testing::ValuesIn(Those(false)), TestName);
INSTANTIATE_TEST_SUITE_P(Nightly, ScenarioTest, testing::ValuesIn(Those(true)), TestName);

}  // namespace
