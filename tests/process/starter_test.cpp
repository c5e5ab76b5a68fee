#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "testing/support/Subprocess.h"
#include "testing/support/TempDir.h"
#include "tools/starter/LaunchStep.h"
#include "tools/starter/ReturnSegment.h"

namespace {

using std::chrono::seconds;
using testing::HasSubstr;

constexpr char kSignedIn[] =
    R"({"postauthcookie":"KXSAMLEBSTATEID=1","samlidpcookies":"","samlidplogoutrequesturl":"","samlslostate":0})";
constexpr char kNothing[] =
    R"({"postauthcookie":"","samlidpcookies":"","samlidplogoutrequesturl":"","samlslostate":0})";

class Starter : public testing::Test {
 protected:
  // A starter with a HOME of its own whose helper behaves as the address says.
  Subprocess::Command Command(const std::string& behaviour,
                              std::vector<std::string> more = {}) const {
    Subprocess::Command command;
    command.arguments = {EB_STARTER, "--type",    "saml-login",  "--url",
                         behaviour,  "--program", EB_FAKE_HELPER};
    command.arguments.insert(command.arguments.end(), more.begin(), more.end());
    command.environment["HOME"] = home_.path();
    return command;
  }

  int SegmentId() const { return shmget(ftok(DataFolder(home_.path()).c_str(), 'R'), 0, 0); }

  // What the helper has told under that name; waits for it.
  std::string Told(const std::string& name) const {
    const auto limit = std::chrono::steady_clock::now() + seconds(20);
    while (!std::filesystem::exists(home_.file(name)) && std::chrono::steady_clock::now() < limit) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return ReadFile(home_.file(name));
  }

  const TempDir home_;
};

TEST_F(Starter, VerdictsAndExitStatuses) {
  const struct {
    std::vector<std::string> options;
    const char* behaviour;
    int status;
    const char* line;
  } cases[] = {
      {{"--cookie", kSignedIn}, "result", 0, "signed in\n"},
      {{"--cookie", kNothing}, "result", 7, "closed by user\n"},
      {{"--cookie", "{\"postauth"}, "result", 12, "unreadable result: "},
      {{}, "result", 9, "nothing written: the helper ended with exit status 0"},
      {{}, "fail", 9, "nothing written: the helper ended with exit status 255"},
      {{}, "crash", 10, "crashed: "},
      {{"--cookie", kNothing, "--timeout", "1"}, "linger", 8, "timed out\n"},
      {{"--program", "/nonexistent"}, "result", 1, "not started: "},
  };
  for (const auto& entry : cases) {
    const Subprocess::End end = RunToEnd(Command(entry.behaviour, entry.options), seconds(30));
    EXPECT_EQ(end.exit_status, entry.status) << entry.line;
    EXPECT_EQ(end.out.rfind(entry.line, 0), 0u) << end.out;
    EXPECT_EQ(SegmentId(), -1) << entry.line;
  }
  EXPECT_THAT(RunToEnd(Command("crash", {"--json"}), seconds(30)).out,
              HasSubstr("\"helper_killed_by\":6,\"return_data\":null"));
}

TEST_F(Starter, RequestReachesTheHelperAsItsZerothArgument) {
  Subprocess::Command command = Command("result \"quoted\" \xc3\xa9",
                                        {"--clear-cookies", "https://gw/slo", "--cookie-stdin"});
  command.input = "a=1; b=\\2\n";
  RunToEnd(command, seconds(30));
  EXPECT_EQ(Told("request"),
            "{\"browsertype\":1,\"url\":\"result \\\"quoted\\\" \xc3\xa9\","
            "\"cookie\":\"a=1; b=\\\\2\",\"samlslourltoclearcookies\":\"https://gw/slo\"}");
  home_.write("cookie", "from=file\r\n");
  RunToEnd(Command("result", {"--type", "saml-logout", "--cookie-file", home_.file("cookie")}),
           seconds(30));
  EXPECT_EQ(Told("request"),
            "{\"browsertype\":3,\"url\":\"result\",\"cookie\":\"from=file\","
            "\"samlslourltoclearcookies\":\"\"}");
}

TEST_F(Starter, OldResultNeverShowsThrough) {
  for (const size_t old_size : {4096, 100}) {
    std::filesystem::create_directories(DataFolder(home_.path()));
    const int id = shmget(ftok(DataFolder(home_.path()).c_str(), 'R'), old_size, IPC_CREAT | 0644);
    void* const memory = shmat(id, nullptr, 0);
    std::memset(memory, 'x', old_size);
    shmdt(memory);
    EXPECT_EQ(RunToEnd(Command("result", {"--cookie", kSignedIn}), seconds(30)).exit_status, 0);
    EXPECT_EQ(SegmentId(), -1);
  }
}

TEST_F(Starter, SignalsArePassedOnAndTheHelperIsReaped) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    std::filesystem::remove(home_.file("ready"));
    Subprocess starter(Command("linger", {"--cookie", kNothing}));
    const pid_t helper = std::stoi(Told("ready"));
    starter.Signal(number);
    const auto end = starter.Wait(seconds(20));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->out, "stopped\n");
    EXPECT_EQ(end->exit_status, 11);
    EXPECT_EQ(Told("signal"), std::to_string(number));
    EXPECT_NE(kill(helper, 0), 0);
  }
}

TEST_F(Starter, StubbornHelperIsKilledWhenItsGraceIsOver) {
  StepSettings settings;
  settings.request.url = "stubborn";
  settings.program = EB_FAKE_HELPER;
  settings.home = home_.path();
  settings.limits = {std::chrono::milliseconds(300), std::chrono::milliseconds(300)};
  setenv("HOME", home_.path().c_str(), 1);
  const StepOutcome outcome = RunStep(settings);
  EXPECT_EQ(outcome.verdict, Verdict::kTimedOut);
  EXPECT_EQ(outcome.end.killed_by, SIGKILL);
  EXPECT_LT(outcome.end.duration, seconds(10));
}

TEST_F(Starter, WrongUsageAndNoHomeRunNothing) {
  const std::vector<std::vector<std::string>> cases = {
      {"--type", "saml-login"},
      {"--type", "vpn", "--url", "result"},
      {"--type", "custom", "--url", "result", "--timeout", "0"},
      {"--type", "custom", "--url", "result", "--cookie-file", "/nonexistent"},
      {"--type", "custom", "--url", "result", "--loud", "yes"},
  };
  for (const auto& arguments : cases) {
    Subprocess::Command command = Command("");
    command.arguments = {EB_STARTER, "--program", EB_FAKE_HELPER};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    const Subprocess::End end = RunToEnd(command, seconds(30));
    EXPECT_EQ(end.exit_status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(std::count(end.err.begin(), end.err.end(), '\n'), 1) << end.err;
  }
  Subprocess::Command homeless = Command("result");
  homeless.environment["HOME"] = std::nullopt;
  const Subprocess::End end = RunToEnd(homeless, seconds(30));
  EXPECT_EQ(end.exit_status, 1);
  EXPECT_EQ(end.out, "not started: HOME is not set\n");
  EXPECT_FALSE(std::filesystem::exists(home_.file("request")));
}

}  // namespace
