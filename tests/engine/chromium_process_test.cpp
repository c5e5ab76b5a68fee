// Chromium's start and its end, above all that nothing stays behind.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <regex>

#include "cef/chromium/process/ChildProcess.h"
#include "cef/chromium/process/ChromiumProcess.h"
#include "cef/chromium/process/Profile.h"
#include "tests/support/RawChromium.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"

using engine::ChromiumOptions;
using engine::ChromiumProcess;

namespace fs = std::filesystem;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

namespace {

std::string ReadAll(int fd) {
  std::string text;
  char piece[4096];
  ssize_t count;
  while (engine::WaitReadable(fd, seconds(10)) && (count = read(fd, piece, sizeof piece)) > 0) {
    text.append(piece, static_cast<size_t>(count));
  }
  return text;
}

// A display, and the options for a Chromium on it whose run folder is known.
class ChromiumProcessTest : public testing::Test {
 protected:
  ChromiumProcessTest() { options_.profile_dir = folder_.file("profile"); }

  // The options with another run folder.
  const ChromiumOptions& NextRun() {
    std::string err;
    options_.run_folder = engine::MakeRunFolder(&err);
    EXPECT_NE(options_.run_folder, "") << err;
    return options_;
  }

  VirtualDisplay display_;
  TempDir folder_;
  ChromiumOptions options_;
};

}  // namespace

// In a process of its own, since it puts the pipes where they hurt most: each at the number that
// the child is to have the other one at.
TEST(ChildProcessTest, StartsWithACleanState) {
  int result[2], in[2], stray[2];
  ASSERT_EQ(pipe2(result, O_CLOEXEC), 0);
  ASSERT_EQ(pipe2(in, O_CLOEXEC), 0);
  ASSERT_EQ(pipe(stray), 0);  // not close-on-exec: must be closed all the same
  ASSERT_EQ(write(in[1], "hello\n", 6), 6);
  const pid_t child = fork();
  if (child == 0) {
    const int in_copy = fcntl(in[0], F_DUPFD_CLOEXEC, 100);
    const int out_copy = fcntl(result[1], F_DUPFD_CLOEXEC, 100);
    dup2(in_copy, 4);
    dup2(out_copy, 3);
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    signal(SIGINT, SIG_IGN);
    engine::ChildOptions options;
    options.command = {
        "/bin/sh", "-c",
        "read -r word <&3; echo $word $MARK $PWD >&4; "
        "grep -E 'Sig(Blk|Ign)' /proc/self/status >&4; exec ls -m /proc/self/fd >&4"};
    options.descriptors = {{4, 3}, {3, 4}};
    options.environment = {{"MARK", "set"}};
    std::string err;
    const pid_t grandchild = engine::StartChild(options, &err);
    _exit(grandchild > 0 && engine::ReapChild(grandchild) == 0 ? 0 : 1);
  }
  close(result[1]);
  const std::string text = ReadAll(result[0]);
  EXPECT_EQ(engine::ReapChild(child), 0);
  // The C library itself ignores its signals 32 and 33 in what it spawns. The fifth descriptor is
  // the listed folder.
  EXPECT_EQ(
      text,
      "hello set /\nSigBlk:\t0000000000000000\nSigIgn:\t0000000180000000\n0, 1, 2, 3, 4, 5\n");
  for (int fd : {result[0], in[0], in[1], stray[0], stray[1]}) close(fd);
}

// 927 MB in 22 seconds came from one page, and every run added a megabyte.
TEST(ChromiumOutputTest, TheLogStaysSmallAndPrivate) {
  TempDir folder;
  const std::string log = folder.write("log", std::string(2 << 20, 'o'));
  chmod(log.c_str(), 0644);
  for (int run = 0; run < 5; ++run) {
    std::string err;
    const auto output = engine::ChromiumOutput::Start(log, &err);
    ASSERT_TRUE(output) << err;
    const std::string line = std::string(999, 'x') + "\n";
    for (int i = 0; i < 2000; ++i) {
      ASSERT_EQ(write(output->writer(), line.data(), line.size()), 1000);
    }
    dprintf(output->writer(), "No usable sandbox!\n\n");
    output->CloseWriter();
    EXPECT_EQ(output->LastLine(), "No usable sandbox!");
    EXPECT_TRUE(output->TellsOfNoSandbox());
    EXPECT_LT(fs::file_size(log), 2u << 20);
  }
  EXPECT_GT(fs::file_size(log), 400u << 10);
  EXPECT_EQ(fs::status(log).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  // What else may stand at its place is let alone, and nothing waits for it.
  const std::string fifo = folder.file("fifo"), link = folder.file("link");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  fs::create_symlink(folder.write("target", ""), link);
  for (const std::string& odd : {fifo, link, folder.path()}) {
    std::string err;
    const auto output = engine::ChromiumOutput::Start(odd, &err);
    dprintf(output->writer(), "text\n");
    output->Note("note");
  }
  EXPECT_EQ(ReadFile(folder.file("target")), "");
}

TEST_F(ChromiumProcessTest, EveryWayToEndLeavesNothingBehind) {
  struct {
    const char* name;
    std::function<void(RawChromium&)> end;
    bool by_itself;
  } const kWays[] = {
      {"Browser.close", [](RawChromium& c) { c.Call("Browser.close"); }, true},
      {"main process killed", [](RawChromium& c) { kill(c.process().pid(), SIGKILL); }, true},
      {"killed", [](RawChromium& c) { c.process().Kill(); }, true},
      {"destroyed", [](RawChromium&) {}, false},
      {"stopped and destroyed", [](RawChromium& c) { kill(-c.process().pid(), SIGSTOP); }, false},
  };
  for (const auto& way : kWays) {
    SCOPED_TRACE(way.name);
    RawChromium chromium(NextRun());
    chromium.OpenPage("data:text/html,<title>x</title>");
    const ProcessWatch watch(options_.run_folder);
    EXPECT_GT(watch.count(), 4u);
    way.end(chromium);
    EXPECT_TRUE(!way.by_itself || chromium.process().WaitForExit(seconds(5)));
    const auto begin = Clock::now();
    chromium.Destroy();
    // It would wait three seconds for one that it asks.
    EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds(2500));
    EXPECT_TRUE(watch.WaitForAll(seconds(2)));
    EXPECT_FALSE(fs::exists(options_.run_folder));
  }
}

// The component updater and the list of accounts, which nothing switches off, get no further than
// the port.
TEST_F(ChromiumProcessTest, NobodyIsAskedUnasked) {
  std::string err;
  const auto profile = engine::Profile::Open(options_.profile_dir, &err);
  const std::string log = folder_.file("net-log");
  options_.switches = {{"log-net-log", log}};
  RawChromium chromium(NextRun());
  chromium.OpenPage("data:text/html,x");
  const auto end = Clock::now() + seconds(20);
  const auto asked = [&](const char* what) {
    return ReadFile(log).find(what) != std::string::npos;
  };
  while ((!asked("ListAccounts") || !asked("cup2key")) && Clock::now() < end) usleep(100000);
  const std::string text = ReadFile(log);
  const std::regex address("\"(?:url\":\"https?://|host\":\"(?:https?://)?)([^:/\"]+)");
  for (std::sregex_iterator it(text.begin(), text.end(), address), last; it != last; ++it) {
    EXPECT_EQ((*it)[1], "192.0.2.1");
  }
}

// Whoever kills us, and however: the guardian cleans up.
TEST_F(ChromiumProcessTest, OurOwnDeathLeavesNothingBehind) {
  for (const bool stuck : {false, true}) {
    SCOPED_TRACE(stuck ? "with a stuck Chromium" : "with a sound Chromium");
    int ready[2];
    ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
    const pid_t owner = fork();
    if (owner == 0) {
      setpgid(0, 0);
      std::string err;
      auto profile = engine::Profile::OpenPrivate(folder_.file("cache"), &err);
      options_.profile_dir = profile->dir();
      options_.private_profile = true;
      RawChromium chromium(NextRun());
      chromium.OpenPage("data:text/html,x");
      if (stuck) kill(-chromium.process().pid(), SIGSTOP);
      dprintf(ready[1], "%s %s", options_.run_folder.c_str(), profile->dir().c_str());
      close(ready[1]);
      pause();
      _exit(0);
    }
    close(ready[1]);
    const std::string paths = ReadAll(ready[0]);
    close(ready[0]);
    const std::string run_folder = paths.substr(0, paths.find(' '));
    const std::string profile = paths.substr(paths.find(' ') + 1);
    ASSERT_TRUE(fs::exists(run_folder) && fs::exists(profile)) << paths;
    const ProcessWatch watch(run_folder);
    EXPECT_GT(watch.count(), 4u);
    kill(-owner, SIGKILL);
    engine::ReapChild(owner);
    EXPECT_TRUE(watch.WaitForAll(seconds(8)));
    EXPECT_FALSE(fs::exists(run_folder));
    EXPECT_FALSE(fs::exists(profile));
  }
}
