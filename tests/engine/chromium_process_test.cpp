// How Chromium is started as a child, and what becomes of its output.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "cef/chromium/process/ChildProcess.h"
#include "cef/chromium/process/ChromiumOutput.h"
#include "tests/support/TempDir.h"

namespace fs = std::filesystem;
using std::chrono::seconds;

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
