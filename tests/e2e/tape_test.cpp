// A run is recorded, and what is played from the tape ends in the same way.

#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <regex>

#include "libs/kxaccess/InstallPaths.h"
#include "tests/e2e/E2eTest.h"
#include "tests/support/Segment.h"
#include "tools/gateway/Scenarios.h"
#include "tools/log/ControlBlock.h"
#include "tools/tape/TapeFile.h"

namespace {

int Level() {
  int level = -1;
  return log_reader::ReadLevel(level).empty() ? level : -1;
}

class TapeTest : public E2eTest {
 protected:
  TapeTest() {
    // Only a log that somebody has written to has a level.
    if (Level() == -1) Run({"custom", "/custom-finished/start?auto=1", "KXEBID=x", false, {}});
    if (Level() != 3) log_reader::SetLevel(3);
  }

  Subprocess::Command Recorded(const Scenario& scenario, const std::string& file) {
    if (scenario.https) TrustBox();
    const std::string limit = scenario.expect.verdict == "timed out" ? "15" : "45";
    const std::string path = "/" + scenario.name + "/start";
    return StarterCommand({scenario.step,
                           path + (scenario.automatic ? "?auto=1" : ""),
                           scenario.cookie,
                           scenario.https,
                           {"--timeout", limit, "--tape", file}});
  }
};

// What must come again: hook, host, status, cookies with their lengths, answer; and the result.
std::string Shape(const tape::Tape& tape, bool answers_only) {
  std::string shape;
  for (const tape::Entry& entry : tape.entries) {
    const bool asked = entry.hook == tape::Hook::kCheckIfCompleted;
    if (asked && answers_only) continue;
    const size_t host = entry.address.find("://") + 3;
    shape += (asked ? "asked " : "answered ") + std::to_string(entry.status) + " " +
             entry.address.substr(host, entry.address.find_first_of("/?", host) - host);
    const std::map<std::string, std::string> sorted(entry.cookies.begin(), entry.cookies.end());
    for (const auto& [name, value] : sorted) {
      shape += " " + name + "=" + value.substr(0, value.find('.'));
    }
    shape += entry.answer ? " ends\n" : "\n";
  }
  for (const int number : {tape.result.post_auth_cookie, tape.result.idp_cookies,
                           tape.result.logout_url ? 1 : 0, tape.result.slo_state}) {
    shape += std::to_string(number) + " ";
  }
  return shape + tape.result.verdict;
}

struct Case {
  const char* scenario;
  bool old_profile = false;  // the identity provider knows the browser
  bool rotated = false;      // while it runs
};

class TapeOfTest : public TapeTest, public testing::WithParamInterface<Case> {};

TEST_P(TapeOfTest, PlaysAsItWasRecorded) {
  const auto [name, old_profile, rotated] = GetParam();
  const Scenario scenario = ReadScenario(ScenarioFolder(), name);
  const std::string first = home_.file("first.json"), second = home_.file("second.json");
  log_is_whole_ = !rotated;
  if (old_profile) RunToEnd(Recorded(scenario, first), kPatience);
  Subprocess starter(Recorded(scenario, first));
  if (rotated) {
    ASSERT_TRUE(WaitForRequest("/" + scenario.name + "/start"));
    const std::string log = InstallPaths::kLogFile;
    std::filesystem::rename(log, log + ".old");
  }
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.verdict, scenario.expect.verdict) << report.err;
  EXPECT_EQ(report.err.find("tape"), std::string::npos) << report.err;
  const std::regex secret("[0-9a-f]{32}|localhost|box|PHN[0-9A-Za-z]+|/start");
  EXPECT_TRUE(std::regex_search(report.log, secret));
  EXPECT_FALSE(std::regex_search(ReadFile(first), secret)) << ReadFile(first);
  EXPECT_EQ(std::filesystem::status(first).permissions(), std::filesystem::perms(0600));
  std::filesystem::remove_all(DataFolder() + "cef");
  GatewayBox::Options options;
  options.tape = first;
  box_ = std::make_unique<GatewayBox>(options);
  Subprocess player(Recorded(box_->scenarios().front(), second));
  EXPECT_EQ(Report(player).verdict, report.verdict);
  EXPECT_EQ(Level(), 3);
  // What an old profile holds is set by redirects, which come on top.
  EXPECT_EQ(Shape(tape::ReadTape(second), old_profile), Shape(tape::ReadTape(first), old_profile))
      << ReadFile(first) << ReadFile(second);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, TapeOfTest,
    testing::Values(Case{"saml-redirect", true}, Case{"saml-refused"}, Case{"saml-post-binding"},
                    Case{"custom-finished", false, true}, Case{"custom-host-check-needed"},
                    Case{"logout-state2"}, Case{"logout-state5"}, Case{"saml-never"}),
    [](const auto& info) {
      return std::regex_replace(std::string(info.param.scenario), std::regex("-"), "_");
    });

TEST_F(TapeTest, LevelIsPutBackWhenTheStarterIsKilled) {
  Subprocess starter(
      Recorded(ReadScenario(ScenarioFolder(), "saml-never"), home_.file("tape.json")));
  ASSERT_TRUE(WaitForRequest("/saml-never/start"));
  EXPECT_EQ(Level(), 5);
  kill(starter.pid(), SIGKILL);
  EXPECT_TRUE(WaitFor([] { return Level() == 3; }));
  EXPECT_TRUE(WaitFor([this] { return UserProcesses().empty(); }));
  TakeSegment(DataFolder());
}

TEST_F(TapeTest, FileOfAnotherOrALinkIsLeftAloneAndNothingRuns) {
  std::string others = "/etc/passwd";
  if (geteuid() == 0) {
    others = home_.write("others", "text");
    ASSERT_EQ(chown(others.c_str(), 1, 1), 0);
  }
  const std::string link = home_.file("link");
  std::filesystem::create_symlink(home_.write("target", "text"), link);
  const std::string before = ReadFile(link) + ReadFile(others);
  const Scenario scenario = ReadScenario(ScenarioFolder(), "custom-finished");
  for (const std::string& file : {link, others, home_.path(), home_.file("no/folder")}) {
    EXPECT_EQ(RunToEnd(Recorded(scenario, file), kPatience).exit_status, 2) << file;
  }
  EXPECT_EQ(ReadFile(link) + ReadFile(others), before);
  EXPECT_TRUE(box_->requests().empty());
}

}  // namespace
