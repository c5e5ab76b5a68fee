// A machine with two users, root and an ordinary one. Takes the log's control block away, which all
// runs share, so it runs alone.

#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "libs/kxaccess/InstallPaths.h"
#include "platform/SharedMemoryName.h"
#include "tests/e2e/E2eTest.h"

namespace {

constexpr char kAutomatic[] = "/saml-redirect/start?auto=1";
constexpr char kNever[] = "/saml-never/start";
constexpr uid_t kUser = 65534;

// The test's user is the ordinary one; root has a home of its own.
class SecondUserTest : public E2eTest {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can start processes of several users";
    if (RunToEnd(AsUser({{"test", "-x", EB_PROGRAM}, "", {}, "", false}), kPatience).exit_status)
      GTEST_SKIP() << "others cannot see the build";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home_.path()))
      ASSERT_EQ(lchown(entry.path().c_str(), kUser, kUser), 0);
    ASSERT_EQ(chown(home_.path().c_str(), kUser, kUser), 0);
    std::filesystem::create_directories(root_home_.path() + InstallPaths::kDataFolderUnderHome);
    std::filesystem::create_directories(InstallPaths::kLogFolder);
    std::ofstream(InstallPaths::kLogFile, std::ios::app) << "";
    chmod(InstallPaths::kLogFile, 0666);
    shm_unlink(block_.c_str());
  }

  static Subprocess::Command AsUser(Subprocess::Command command) {
    const std::string id = std::to_string(kUser);
    const std::vector<std::string> prefix = {"setpriv", "--reuid=" + id, "--regid=" + id,
                                             "--clear-groups"};
    command.arguments.insert(command.arguments.begin(), prefix.begin(), prefix.end());
    return command;
  }
  std::unique_ptr<Subprocess> SignIn(uid_t user, const char* path) const {
    Subprocess::Command command = StarterCommand({"saml-login", path, "KXSAMLEMBID=l", false, {}});
    if (user != 0) return std::make_unique<Subprocess>(AsUser(command));
    command.environment = {{"HOME", root_home_.path()}, {"TMPDIR", root_home_.path()}};
    return std::make_unique<Subprocess>(command);
  }

  const TempDir root_home_;
  const std::string block_ =
      SharedMemoryName("/Corvane Secure/debuglog.shm", InstallPaths::kRoot, SharedAmong::kAllUsers);
};

// Report() fails when the log does not say how the run ended.
TEST_F(SecondUserTest, BothSignInAndLogInAnyOrder) {
  for (const auto& order : {std::pair<uid_t, uid_t>(0, kUser), {kUser, 0}}) {
    shm_unlink(block_.c_str());
    for (const uid_t user : {order.first, order.second})
      EXPECT_EQ(Report(*SignIn(user, kAutomatic)).verdict, "signed in") << "user " << user;
  }
  const auto one = SignIn(0, kAutomatic);
  const auto other = SignIn(kUser, kAutomatic);
  EXPECT_EQ(Report(*one).verdict, "signed in");
  EXPECT_EQ(Report(*other).verdict, "signed in");
}

// Not even with an open home folder, no limit to core files, and an environment full of secrets.
// Chromium's keeper of crash reports wrote memory below ~/.config; its TLS keys went to a file that
// the environment named.
TEST_F(SecondUserTest, OthersSeeNoSecretOfARun) {
  ASSERT_EQ(chmod(home_.path().c_str(), 0755), 0);
  rlimit cores;
  getrlimit(RLIMIT_CORE, &cores);
  cores.rlim_cur = cores.rlim_max;
  setrlimit(RLIMIT_CORE, &cores);
  Subprocess::Command command = DirectCommand("");
  command.program.clear();
  command.arguments = {"bash", "-c", R"(exec -a "$0" "$1")", Request(kNever), EB_PROGRAM};
  command.environment["MY_ACCESS_KEY"] = "hushed";
  command.environment["LC_TIME"] = "inherited";
  command.environment["SSLKEYLOGFILE"] = home_.file("keys");
  Subprocess program(AsUser(command));
  ASSERT_NE(display_->WaitForWindow("Sign in to your account", kPatience), "");

  const pid_t chromium = BrowserProcesses("").at(0);
  std::string look = "find " + home_.path() + " -type f -readable";
  for (const pid_t process : UserProcesses()) {
    const std::string folder = "/proc/" + std::to_string(process);
    look += "; cd " + folder + " && cat cmdline environ maps; ls fd";
    if (process != chromium && process != program.pid()) continue;
    EXPECT_THAT(ReadFile(folder + "/limits"), testing::ContainsRegex("core file size +1 +1 "));
  }
  Subprocess::Command other;
  other.arguments = {"setpriv", "--reuid=12345", "--regid=12345", "--clear-groups", "bash",
                     "-c",      look + "; true"};
  const std::string seen = RunToEnd(other, kPatience).out;
  for (const char* secret : {"KXSAMLEMBID", "hushed", "[heap]", "0\n1\n2", "/Corvane Secure/cef_b"})
    EXPECT_EQ(seen.find(secret), std::string::npos) << secret;
  EXPECT_THAT(seen, testing::HasSubstr("--remote-debugging-pipe")) << "the look was none";
  EXPECT_EQ(seen.rfind(home_.path() + "/", 0), std::string::npos) << "files can be read: " << seen;
  const std::string environment = ReadFile("/proc/" + std::to_string(chromium) + "/environ");
  EXPECT_EQ(environment.find("hushed"), std::string::npos);
  EXPECT_NE(environment.find("LC_TIME=inherited"), std::string::npos);
  // Or else threads that connect to the display put its name together in one buffer.
  EXPECT_NE(environment.find("XAUTHORITY=" + home_.path() + "/"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(home_.file("keys"))) << "the keys of TLS connections";
  kill(chromium, SIGSEGV);
  EXPECT_EQ(DirectEnd(program, DataFolder()).exit_status, 0);
  EXPECT_FALSE(std::filesystem::exists(home_.file(".config/chromium"))) << "Chromium's memory";
}

}  // namespace
