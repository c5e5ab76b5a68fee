// What a user's machine puts in the way: a step gets round it, or says in one line what it was.

#include <signal.h>
#include <unistd.h>

#include "libs/kxaccess/InstallPaths.h"
#include "tests/e2e/E2eTest.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr char kSignIn[] = "/saml-redirect/start?auto=1";
constexpr char kNever[] = "/saml-never/start";
constexpr char kBrowserFailed[] = "browser failed";
constexpr char kFormTitle[] = "Sign in to your account";

// Runs in a mount namespace of the test's own.
class ObstacleTest : public E2eTest {
 protected:
  static std::vector<std::string> Unshare() {
    if (geteuid() == 0) return {"unshare", "--mount"};
    return {"unshare", "--user", "--map-root-user", "--mount"};
  }

  void SetUp() override {
    Subprocess::Command probe;
    probe.arguments = Unshare();
    probe.arguments.insert(probe.arguments.end(), {"mount", "--bind", "/usr/bin", "/usr/bin"});
    if (RunToEnd(probe, kPatience).exit_status != 0) GTEST_SKIP() << "no mount namespaces here";
  }

  // A command behind an obstacle of obstacles.sh.
  Subprocess::Command After(const std::string& obstacle, Subprocess::Command command) const {
    std::filesystem::create_directories(home_.file("away"));
    std::vector<std::string> arguments = Unshare();
    arguments.insert(arguments.end(),
                     {"/bin/bash", EB_OBSTACLES "/e2e/obstacles.sh", obstacle, command.arguments[0],
                      command.program.empty() ? command.arguments[0] : command.program});
    arguments.insert(arguments.end(), command.arguments.begin() + 1, command.arguments.end());
    command.environment["SUPPORT"] = EB_OBSTACLES "/support";
    command.environment["DATA"] = DataFolder();
    command.environment["FAKE"] = home_.file("away");
    command.environment["STAGE"] = InstallPaths::kRoot;
    command.environment["FAKE_PROGRAM"] = EB_FAKE_CHROMIUM;
    command.arguments = arguments;
    command.program.clear();
    return command;
  }
  Subprocess::Command SignsInAfter(const std::string& obstacle) const {
    return After(obstacle,
                 StarterCommand({"saml-login", kSignIn, "KXSAMLEMBID=launch", false, {}}));
  }
};

struct Obstacle {
  const char* name;
  const char* verdict;
  const char* detail = "";  // how the verdict's detail begins
  int seconds = 20;         // that a failure may take
};

class ManyObstaclesTest : public ObstacleTest, public testing::WithParamInterface<Obstacle> {};

TEST_P(ManyObstaclesTest, AreOvercomeOrNamed) {
  const auto begin = std::chrono::steady_clock::now();
  Subprocess starter(SignsInAfter(GetParam().name));
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.verdict, GetParam().verdict) << report.log << report.err;
  EXPECT_THAT(report.detail, StartsWith(GetParam().detail));
  EXPECT_EQ(report.helper_exit_status, 0);
  if (report.verdict == "signed in") {
    EXPECT_THAT(report.idp_cookies, HasSubstr("IDPSESSION="));
    return;
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin,
            std::chrono::seconds(GetParam().seconds * EB_SLOWNESS));
  EXPECT_TRUE(box_->requests().empty()) << "no page was opened";
}

INSTANTIATE_TEST_SUITE_P(
    All, ManyObstaclesTest,
    testing::Values(
        Obstacle{"SharedMemorySmall", "signed in"}, Obstacle{"DataFolderTiny", "signed in"},
        Obstacle{"RoomNowhere", kBrowserFailed, "Chromium could not be started: cannot write "},
        Obstacle{"DataFolderMissing", "signed in"}, Obstacle{"DataFolderReadOnly", "signed in"},
        Obstacle{"ProfileReadOnly", "signed in"}, Obstacle{"LockOfAnotherHost", "signed in"},
        Obstacle{"TemporaryFolderNotOurs", "signed in"},
        Obstacle{"EnvironmentIsNoUtf8", "signed in"},
        Obstacle{"DisplayMissing", kBrowserFailed,
                 "Chromium could not be started: no display: DISPLAY is not set"},
        Obstacle{"DisplayDead", kBrowserFailed,
                 "Chromium could not be started: no display: the X server :4242 is gone"},
        Obstacle{"DisplaySilent", kBrowserFailed,
                 "Chromium could not be started: no display: the X server does not answer", 8},
        Obstacle{"ChromiumMissing", kBrowserFailed,
                 "Chromium could not be started: no browser: Chromium is not installed"},
        Obstacle{"ChromiumTooOld", kBrowserFailed,
                 "Chromium could not be started: Chromium/40.0.2214.10 is too old: it does not "
                 "know Fetch.enable"},
        Obstacle{"PolicyOfTheMachine", kBrowserFailed,
                 "Chromium could not be started: the policy RemoteDebuggingAllowed in "
                 "/etc/chromium/policies/managed/p.json forbids that other programs use /usr/",
                 2},
        Obstacle{"PolicyRecommended", kBrowserFailed,
                 "Chromium could not be started: the policy DeveloperToolsAvailability in "
                 "/etc/chromium/policies/recommended/p.json forbids",
                 2},
        Obstacle{"PolicyOfAnAccount", kBrowserFailed,
                 "Chromium could not be started: the policy RemoteDebuggingAllowed forbids", 4},
        Obstacle{"ChromiumIsAStub", "signed in"},
        Obstacle{"ChromiumEndsInTheUsersProfile", "signed in"},
        Obstacle{"ChromiumHangs", kBrowserFailed,
                 "Chromium could not be started: it does not answer"},
        Obstacle{"WindowDoesNotCome", kBrowserFailed, "no browser window could be opened: "}),
    [](const auto& info) { return info.param.name; });

TEST_F(ObstacleTest, ASignalEndsTheWaitForChromium) {
  Subprocess starter(SignsInAfter("ChromiumHangs"));
  ASSERT_TRUE(WaitFor([&] { return !BrowserProcesses("").empty(); }));
  const auto begin = std::chrono::steady_clock::now();
  starter.Signal(SIGTERM);
  const StarterReport report = Report(starter);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
  EXPECT_EQ(report.verdict, "stopped") << report.log;
  EXPECT_EQ(report.helper_exit_status, 0);
  EXPECT_EQ(report.slo_state, 0) << "an empty result is written all the same";
  EXPECT_THAT(report.log, HasSubstr("Handling the Signal:15 received"));
}

// Not as root, for whom there is no sandbox.
TEST_F(ObstacleTest, TheSandboxIsOnUnlessItIsForbidden) {
  const auto filters = [](pid_t process) {
    const std::string status = ReadFile("/proc/" + std::to_string(process) + "/status");
    const std::string name = "Seccomp_filters:";
    return std::stoi(status.substr(status.find(name) + name.size()));
  };
  for (const bool forbidden : {false, true}) {
    SCOPED_TRACE(forbidden ? "no namespaces" : "namespaces");
    Subprocess starter(
        After(forbidden ? "OrdinaryUserWithoutNamespaces" : "OrdinaryUser",
              StarterCommand({"saml-login", kNever, "KXSAMLEMBID=launch", false, {}})));
    ASSERT_NE(display_->WaitForWindow(kFormTitle, kPatience), "") << starter.err();
    const std::vector<pid_t> renderers = BrowserProcesses("renderer");
    EXPECT_FALSE(renderers.empty());
    for (const pid_t renderer : renderers) {
      EXPECT_EQ(filters(renderer) == filters(getpid()), forbidden);
    }
    kill(HelperProcess(), SIGTERM);
    const StarterReport report = Report(starter);
    EXPECT_EQ(report.helper_exit_status, 0) << report.err;
    const std::string log = ReadFile(DataFolder() + "cef_browser.log");
    EXPECT_EQ(log.find("No sandbox can be had here") != log.npos, forbidden) << log;
  }
}

TEST_F(E2eTest, APageStartsNoProgramsAndStaysOffTheDisk) {
  const std::string called = home_.file("called");
  for (const char* name : {"xdg-open", "xdg-email", "xdg-settings", "gio", "sensible-browser"}) {
    const std::string path =
        home_.write(std::string("bin/") + name, "#!/bin/sh\necho \"$0 $*\" >>'" + called + "'\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
  Subprocess::Command command = StarterCommand(
      {"saml-login", "/saml-pushy-page/start?auto=1", "KXSAMLEMBID=launch", false, {}});
  command.environment["PATH"] = home_.file("bin") + ":" + getenv("PATH");
  Subprocess starter(command);
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.verdict, "signed in") << report.log << report.err;
  EXPECT_EQ(ReadFile(called), "");
  const std::string browser_log = DataFolder() + "cef_browser.log";
  EXPECT_EQ(std::filesystem::status(browser_log).permissions(), std::filesystem::perms(0600));
  EXPECT_LT(std::filesystem::file_size(browser_log), 100u << 10);
  // What was posted, and the addresses.
  for (const auto& entry : std::filesystem::recursive_directory_iterator(DataFolder())) {
    if (!entry.is_regular_file()) continue;
    const std::string text = ReadFile(entry.path());
    for (const char* secret : {"PHNhbWxw", "/saml-pushy-page/", "idp/sso says"}) {
      EXPECT_EQ(text.find(secret), text.npos) << secret << " in " << entry.path();
    }
  }
}

TEST_F(ObstacleTest, WithoutHomeTheTemporaryFolderServes) {
  Subprocess program(After("HomeNotSet", DirectCommand(Request(kSignIn))));
  const DirectReport report = DirectEnd(program, home_.file("away"));
  EXPECT_EQ(report.exit_status, 0) << report.err;
  EXPECT_THAT(report.document, HasSubstr("\"postauthcookie\":\"KXSAMLEBSTATEID=")) << report.log;
}

TEST_F(E2eTest, DataFolderCannotBeMade) {
  Subprocess::Command command = DirectCommand(Request(kSignIn));
  command.environment["HOME"] = home_.write("file", "") + "/home";
  const DirectReport report = RunDirectly(command);
  EXPECT_EQ(report.exit_status, 0) << report.err;
  EXPECT_THAT(report.log, HasSubstr("Failed to attach shared memory"));
}

// What happens in the middle, while the page is shown.
class MishapTest : public E2eTest, public testing::WithParamInterface<bool> {};

TEST_P(MishapTest, LeadsToAnEndInOrder) {
  const bool crash = GetParam();
  Subprocess starter(StarterCommand({"saml-login", kNever, "KXSAMLEMBID=launch", false, {}}));
  ASSERT_NE(display_->WaitForWindow(kFormTitle, kPatience), "");
  const auto begin = std::chrono::steady_clock::now();
  for (const pid_t process : BrowserProcesses(crash ? "renderer" : "")) {
    kill(process, crash ? SIGKILL : SIGSTOP);
  }
  // A hanging one ends with the step, a dead page with its window; reloading is another test's.
  if (!crash) starter.Signal(SIGTERM);
  EXPECT_TRUE(WaitFor([&] {
    if (crash) display_->Run({"wmctrl", "-c", kFormTitle});
    return starter.Wait(std::chrono::milliseconds(300)).has_value();
  }));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(6));
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.verdict, crash ? "closed by user" : "stopped") << report.log << report.err;
  EXPECT_EQ(report.helper_exit_status, 0);
  EXPECT_EQ(report.slo_state, 0) << "the result is written";
}

INSTANTIATE_TEST_SUITE_P(All, MishapTest, testing::Bool(), [](const auto& info) {
  return info.param ? "PageCrashes" : "ChromiumHangs";
});

TEST_F(E2eTest, RequestsThatCannotBeUsed) {
  const std::string tail = R"(,"url":"http://gateway.localhost/","cookie":"")";
  const std::string slo = R"(,"samlslourltoclearcookies":"")";
  const struct {
    std::string request;
    int status;
    const char* log;
  } cases[] = {
      {"{", 255, " parse error"},
      {EB_PROGRAM, 255, " parse error"},
      {"[]", 255, " document is corrupted"},
      {"{\"browsertype\":\"1\"" + tail + slo + "}", 255, " no object 'browsertype'"},
      {R"({"browsertype":1,"cookie":"")" + slo + "}", 255, " no object 'url'"},
      {R"({"browsertype":1,"url":"")" + slo + "}", 255, " no object 'cookie' "},
      {"{\"browsertype\":3" + tail + "}", 255, "No object 'samlslourltoclearcookies'"},
      {"{\"browsertype\":0" + tail + slo + "}", 0, "Browser type requested 0"},
      {"{\"browsertype\":4" + tail + slo + "}", 0, "Browser type requested 4"},
  };
  for (const auto& entry : cases) {
    const DirectReport report = RunDirectly(DirectCommand(entry.request));
    EXPECT_EQ(report.exit_status, entry.status) << entry.request;
    EXPECT_THAT(report.log, HasSubstr(entry.log));
    EXPECT_EQ(report.document, "");
    EXPECT_TRUE(box_->requests().empty()) << "no page was opened";
  }
}

}  // namespace
