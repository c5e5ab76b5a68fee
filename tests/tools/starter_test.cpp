#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <chrono>
#include <cstring>
#include <future>
#include <regex>
#include <set>
#include <thread>

#include "tests/support/Segment.h"
#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"
#include "tools/starter/ReturnSegment.h"
#include "tools/starter/ebStarter.h"

namespace {

using namespace ebStarter;
using std::chrono::milliseconds;
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
    command.arguments = {EB_STARTER,  "--type",      "saml-login", "--url", "http://" + behaviour,
                         "--program", EB_FAKE_HELPER};
    command.arguments.insert(command.arguments.end(), more.begin(), more.end());
    command.environment["HOME"] = home_.path();
    return command;
  }

  // The same through the library.
  Settings Step(const std::string& behaviour) const {
    Settings settings;
    settings.request.url = "http://" + behaviour;
    settings.program = EB_FAKE_HELPER;
    settings.home = home_.path();
    return settings;
  }

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
  const std::string kib(1024, 'x');
  const struct {
    std::vector<std::string> options;
    const char* behaviour;
    std::string says;
    int status;
    std::string line;  // a part of it
  } cases[] = {
      {{"--cookie", kSignedIn}, "result", "cef: too late\n", 0, "signed in\n"},
      {{"--cookie", kNothing}, "result", "x", 7, "closed by user: the window was closed before "},
      {{"--cookie", kNothing},
       "result",
       "cef: closed by the user after idp.test could not be reached: net::ERR_X\n",
       7,
       "closed by user: the window was closed after idp.test could not be reached: net::ERR_X; "},
      {{"--cookie", "{\"postauth"}, "result", "cef: x", 12, "unreadable result: "},
      {{}, "result", "", 9, "the helper exited with status 0; its log says why\n"},
      {{}, "fail", "one\nFailed.\r\n\n", 9, "are unusable); its last line was: Failed.\n"},
      {{}, "crash", kib + "y", 10, "was killed by SIGABRT; its last line was: " + kib + "\n"},
      {{"--cookie=a;b=x/et-val"}, "crash", "et-val\": x", 10, "its last line was: (not repeated"},
      {{"--cookie", kNothing}, "result", "cef: a\ncef: \x1b[ \xff\nb\n", 13, "failed: ?[ ?\n"},
      {{"--timeout=1"}, "linger", "cef: x\n", 8, "had not finished after 1 second; "},
      {{"--program=/no"}, "result", "", 1, "cannot execute /no: No such file or directory\n"},
  };
  for (const auto& entry : cases) {
    auto command = Command(entry.behaviour, entry.options);
    command.environment["HELPER_SAYS"] = entry.says;
    const Subprocess::End end = RunToEnd(command, seconds(30));
    EXPECT_EQ(end.exit_status, entry.status) << entry.line;
    EXPECT_THAT(end.out, HasSubstr(entry.line));
    EXPECT_EQ(std::count(end.out.begin(), end.out.end(), '\n'), 1) << end.out;
    EXPECT_EQ(end.err.rfind(entry.says, 0), 0u) << end.err;
    const bool faulty = std::set<int>{1, 9, 10, 12, 13}.count(entry.status) == 1;
    EXPECT_EQ(end.err.find("embedded-browser-doctor") != std::string::npos, faulty) << entry.line;
    EXPECT_EQ(SegmentId(DataFolder(home_.path())), -1) << entry.line;
  }
  for (const auto& [language, detail] :
       {std::pair("eo:de_AT", "a.test war nicht erreichbar (E)."),
        std::pair("es_MX:fr", "No se pudo acceder a a.test (E).")}) {
    Subprocess::Command command = Command("result", {"--cookie", kNothing, "--json"});
    command.environment["LANGUAGE"] = language;
    command.environment["HELPER_SAYS"] =
        "cef: closed by the user after a.test could not be reached: E\n";
    EXPECT_THAT(RunToEnd(command, seconds(30)).out,
                HasSubstr("\"reason\":\"page-unreachable\",\"detail\":\"" + std::string(detail)));
  }
  EXPECT_THAT(RunToEnd(Command("crash", {"--json"}), seconds(30)).out,
              HasSubstr("\"helper_killed_by\":6,\"return_data\":null"));
}

TEST_F(Starter, ErrorOutputArrivesWholeAndItsLateHoldersAreNotWaitedFor) {
  const Subprocess::End end = RunToEnd(Command("flood", {"--cookie", kSignedIn}), seconds(30));
  EXPECT_EQ(end.exit_status, 0);
  EXPECT_EQ(end.err, std::string(200000, '.'));
  EXPECT_EQ(kill(std::stoi(Told("child")), SIGKILL), 0);
}

TEST_F(Starter, TerminalShowsTheSecondsThatAreLeft) {
  Subprocess::Command command = Command("linger", {"--timeout", "2"});
  std::string line;
  for (const std::string& argument : command.arguments) line += "'" + argument + "' ";
  command.arguments = {"script", "-qec", line, "/dev/null"};
  const Subprocess::End end = RunToEnd(command, seconds(30));
  EXPECT_THAT(end.out, testing::MatchesRegex(".*2 s left\r.*1 s left\r.*\r\033\\[Ktimed out: .*"));
  EXPECT_EQ(end.exit_status, 8);
}

TEST_F(Starter, RequestReachesTheHelperAsItsZerothArgument) {
  Subprocess::Command command = Command("result/ \"quoted\" \xc3\xa9",
                                        {"--clear-cookies", "https://gw/slo", "--cookie-stdin"});
  command.input = "a=1; b=\\2\n";
  RunToEnd(command, seconds(30));
  EXPECT_EQ(Told("request"),
            "{\"browsertype\":1,\"url\":\"http://result/ \\\"quoted\\\" \xc3\xa9\","
            "\"cookie\":\"a=1; b=\\\\2\",\"samlslourltoclearcookies\":\"https://gw/slo\"}");
  home_.write("cookie", "from=file\r\n");
  command = Command("result", {"--type=saml-logout", "--cookie-file=" + home_.file("cookie")});
  for (const mode_t mode : {0640, 0600}) {
    chmod(home_.file("cookie").c_str(), mode);
    const std::string err = RunToEnd(command, seconds(30)).err;
    EXPECT_EQ(err.find("others can read ") != std::string::npos, mode == 0640);
  }
  EXPECT_EQ(Told("request"),
            "{\"browsertype\":3,\"url\":\"http://result\",\"cookie\":\"from=file\","
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
    EXPECT_EQ(SegmentId(DataFolder(home_.path())), -1);
  }
}

TEST_F(Starter, SecondStepInOneHomeIsRefusedUnlessItWaits) {
  Subprocess first(Command("linger", {"--cookie", kSignedIn}));
  Told("ready");
  const auto refused = RunToEnd(Command("result", {"--cookie", kNothing}), seconds(30));
  EXPECT_EQ(refused.exit_status, 14);
  EXPECT_EQ(refused.out, "another step is running: process " + std::to_string(first.pid()) + "\n");
  EXPECT_EQ(RunToEnd(Command("result", {"--wait", "--timeout=1"}), seconds(30)).exit_status, 14);
  Subprocess waiting(Command("result", {"--wait", "--cookie", kNothing}));
  first.Signal(SIGTERM);
  const auto end = first.Wait(seconds(20));
  ASSERT_TRUE(end);
  EXPECT_EQ(end->exit_status, 0) << end->out;
  const auto last = waiting.Wait(seconds(20));
  ASSERT_TRUE(last);
  EXPECT_EQ(last->exit_status, 7) << last->out;
}

TEST_F(Starter, OtherUsersCannotReadTheResult) {
  Subprocess starter(Command("linger", {"--cookie", kSignedIn}));
  Told("ready");
  shmid_ds segment = {};
  shmctl(SegmentId(DataFolder(home_.path())), IPC_STAT, &segment);
  EXPECT_EQ(segment.shm_perm.mode & 0777, 0600);
  const auto folder = std::filesystem::status(DataFolder(home_.path())).permissions();
  EXPECT_EQ(folder, std::filesystem::perms::owner_all);
  starter.Signal(SIGTERM);
  EXPECT_TRUE(starter.Wait(seconds(20)));
}

TEST_F(Starter, SignalsArePassedOnAndTheHelperIsReaped) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    std::filesystem::remove(home_.file("ready"));
    Subprocess starter(Command("linger", {"--cookie", kNothing}));
    const pid_t helper = std::stoi(Told("ready"));
    starter.Signal(number);
    const auto end = starter.Wait(seconds(20));
    ASSERT_TRUE(end);
    EXPECT_THAT(end->out, testing::MatchesRegex("stopped: SIG(HUP|INT|TERM) arrived before.*\n"));
    EXPECT_EQ(end->exit_status, 11);
    EXPECT_EQ(Told("signal"), std::to_string(number));
    EXPECT_NE(kill(helper, 0), 0);
  }
}

TEST_F(Starter, StubbornHelperIsKilledWhenItsGraceIsOver) {
  for (const bool stopped : {false, true}) {
    std::filesystem::remove(home_.file("ready"));
    StopSwitch stop;
    Settings settings = Step("stubborn");
    settings.limits = {stopped ? seconds(10) : milliseconds(300), milliseconds(300)};
    settings.stop = &stop;
    auto step = std::async(std::launch::async, [&] { return RunStep(settings); });
    Told("ready");
    if (stopped) stop.Stop(SIGINT);
    const Outcome outcome = step.get();
    EXPECT_EQ(outcome.verdict, stopped ? Verdict::kStopped : Verdict::kTimedOut);
    EXPECT_EQ(outcome.end.killed_by, SIGKILL);
    EXPECT_LT(outcome.end.duration, seconds(5));
  }
}

TEST_F(Starter, HelperEndsWhenItsCallersProcessGroupIsKilled) {
  ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  // The one writes until its end, and must not fail for want of a reader.
  for (const bool stubborn : {false, true}) {
    std::filesystem::remove(home_.file("ready"));
    const pid_t caller = fork();
    if (caller == 0) {
      setpgid(0, 0);
      Settings settings = Step(stubborn ? "stubborn" : "chatty");
      settings.limits.grace = milliseconds(stubborn ? 300 : 20000);
      RunStep(settings);
      _exit(0);
    }
    const pid_t helper = std::stoi(Told("ready"));
    kill(-caller, SIGKILL);
    waitpid(caller, nullptr, 0);
    int status = 0;
    ASSERT_EQ(waitpid(helper, &status, 0), helper);
    EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, stubborn ? SIGKILL : 0);
    EXPECT_EQ(Told("signal"), std::to_string(SIGTERM));
  }
  while (wait(nullptr) > 0) continue;
}

ptrdiff_t OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST_F(Starter, StepsOfOneProcessRunAndStopEachByItself) {
  const ptrdiff_t descriptors = OpenDescriptors();
  const TempDir other;
  std::optional<StopSwitch> stop(std::in_place);
  Settings lingering = Step("linger"), quick = Step("result");
  lingering.stop = &*stop;
  quick.home = other.path();
  quick.request.cookie = kSignedIn;
  auto lingers = std::async(std::launch::async, [&] { return RunStep(lingering); });
  Told("ready");
  EXPECT_TRUE(freopen("/dev/zero", "r", stdin));
  const int stray = dup(STDOUT_FILENO);  // not close-on-exec
  signal(SIGPIPE, SIG_IGN);
  const Outcome outcome = RunStep(quick);
  close(stray);
  EXPECT_EQ(outcome.verdict, Verdict::kSignedIn);
  EXPECT_EQ(ReadFile(other.file("inherited")), "012/dev/null");
  EXPECT_EQ(outcome.data.value_or(ReturnData()).post_auth_cookie, "KXSAMLEBSTATEID=1");
  stop->Stop(SIGHUP);
  EXPECT_EQ(lingers.get().verdict, Verdict::kStopped);
  stop->Stop();
  EXPECT_EQ(RunStep(lingering).end.pid, -1) << "a used switch ends a step before it starts";
  signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(RunStep(quick).verdict, Verdict::kSignedIn) << "reaped behind its back";
  signal(SIGCHLD, SIG_DFL);
  stop.reset();
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(Starter, ExampleOfALibraryClient) {
  Subprocess::Command command;
  command.arguments = {EB_EXAMPLE, EB_FAKE_HELPER, home_.path(), "http://result", kSignedIn};
  EXPECT_EQ(RunToEnd(command, seconds(30)).out, "signed in: \nsession: KXSAMLEBSTATEID=1\n");
}

TEST_F(Starter, ManualAndHelpAgree) {
  const std::string help = RunToEnd(Command("", {"--help"}), seconds(30)).out;
  EXPECT_LE(std::count(help.begin(), help.end(), '\n'), 24);
  EXPECT_FALSE(std::regex_search(help, std::regex("[^\n]{81}")));
  std::string manual = std::regex_replace(ReadFile(EB_MANUAL), std::regex("\\\\-"), "-");
  manual.erase(0, manual.find(".SH OPTIONS"));
  const std::regex option("--[a-z-]+");
  for (std::sregex_iterator it(help.begin(), help.end(), option), end; it != end; ++it) {
    const std::regex entry("\\.TP\n\\.BI?R? [^\n]*" + it->str() + "[^a-z-]");
    EXPECT_TRUE(std::regex_search(manual, entry)) << it->str();
  }
  for (int status = 0; status <= 13; ++status) {
    std::string name = status == 2 ? "wrong usage" : VerdictName(static_cast<Verdict>(status));
    EXPECT_THAT(help, HasSubstr(std::to_string(status) + " " + name));
    name[0] = static_cast<char>(std::toupper(name[0]));
    EXPECT_THAT(manual, HasSubstr("\n.B " + std::to_string(status) + "\n" + name));
  }
}

TEST_F(Starter, WrongUsageAndNoHomeRunNothing) {
  const std::vector<std::vector<std::string>> cases = {{"--url="},
                                                       {"--url=gateway.test"},
                                                       {"--url=file:///etc/passwd"},
                                                       {"--url=https://:443/"},
                                                       {"--url=https://a b/"},
                                                       {"--url=https://a/\n"},
                                                       {"--url=http://[::1"},
                                                       {"--url=javascript:alert(1)//://a"},
                                                       {"--url"},
                                                       {"--type=vpn"},
                                                       {"--timeout=0"},
                                                       {"--loud", "yes"},
                                                       {"--json=yes"},
                                                       {"--cookie=a", "--cookie-stdin"},
                                                       {"--cookie-file=/none"},
                                                       {"--cookie-file", "/"},
                                                       {"--cookie-file=/dev/zero"},
                                                       {"more"}};
  for (const auto& arguments : cases) {
    const auto end = RunToEnd(Command("result", arguments), seconds(30));
    EXPECT_EQ(end.exit_status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(std::count(end.err.begin(), end.err.end(), '\n'), 1) << end.err;
  }
  auto homeless = Command("result");
  homeless.environment["HOME"] = std::nullopt;
  EXPECT_THAT(RunToEnd(homeless, seconds(30)).out, HasSubstr("not started: HOME is not set"));
  EXPECT_FALSE(std::filesystem::exists(home_.file("request")));
}

}  // namespace
