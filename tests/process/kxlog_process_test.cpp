// Several processes on one log.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "tests/process/LogWriters.h"

using std::chrono::seconds;

namespace {

class LogProcessTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(KXLogInitialize(), 1); }

  LogArea area_;
};

TEST_F(LogProcessTest, StoppedHolderCostsTwoSecondsOnceAndItsRecordsOnly) {
  const Writer holder = StartWriter({"hold"});
  ASSERT_TRUE(holder->WaitForOutput("held", seconds(20)));
  holder->Signal(SIGSTOP);
  const Writer late = StartWriter({"1"});
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 200; ++i) EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "m"), 0);
  const auto taken = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(taken, seconds(2));
  EXPECT_LT(taken, seconds(4));
  EXPECT_EQ(StatusOf(late, seconds(5)), 2) << "a process that comes later waits for ever";
  holder->Signal(SIGKILL);
  ASSERT_TRUE(holder->Wait(seconds(10)));
  EXPECT_GT(_KXLogEntryNew(1, "s", 1, "T", "m"), 0);
}

TEST_F(LogProcessTest, FullDiskNeitherTearsARecordNorEndsTheWriter) {
  Subprocess::Command spec;
  spec.arguments = {"env", "--default-signal=XFSZ",         "sh",
                    "-c",  "ulimit -f 16; exec \"$0\" 500", LOG_WRITER};
  // Full from the start the second time: then the system also sends a signal.
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(RunToEnd(spec, seconds(20)).exit_status, 0)
        << "a record without room counts as written";
    ASSERT_GT(_KXLogEntryNew(1, "s", 1, "T", "%600s", "behind"), 0);
    const size_t count = WholeRecords().size();
    EXPECT_GT(count, 20u);
    EXPECT_LT(count, 400u);
    EXPECT_EQ(ControlBlock()->file_size, std::filesystem::file_size(InstallPaths::kLogFile));
  }
}

// A system that has made no semaphore yet: the kernel's first id is 0, which the library takes for
// "no lock".
TEST(LogLockTest, FirstSemaphoreOfTheSystem) {
  constexpr int kNoNamespace = 77;
  const LogArea area;
  const TempDir folder;
  const auto lock = [&folder] {
    alarm(20);
    if (unshare(CLONE_NEWIPC) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWIPC) != 0)
      return kNoNamespace;
    if (!LogLockInit(folder.path().c_str()) || semid == 0) return 1;
    const int first = semid;
    semid = 0;
    if (!LogLockInit(folder.path().c_str()) || semid != first) return 2;
    if (!LogLock() || semctl(semid, 0, GETVAL) != 0) return 3;
    seminfo info = {};
    semctl(0, 0, SEM_INFO, reinterpret_cast<void*>(&info));
    return info.semusz == 1 ? 0 : 4;  // nothing but the lock is left
  };
  const pid_t child = fork();
  if (child == 0) _exit(lock());
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  if (WEXITSTATUS(status) == kNoNamespace) GTEST_SKIP() << "no IPC namespace of its own";
  EXPECT_EQ(status, 0);
}

// Users of one machine, played by processes with another user id each.
class LogUsersTest : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can start processes of several users";
    if (!CanPlayUsers()) GTEST_SKIP() << "others cannot see the build";
  }

  static void MakeFolderAndFile() {
    std::filesystem::create_directories(InstallPaths::kLogFolder);
    std::ofstream(InstallPaths::kLogFile) << "";
    chmod(InstallPaths::kLogFile, 0666);
  }

  LogArea area_;
};

constexpr uid_t kSomebodyElse = 65533;

TEST_F(LogUsersTest, ShareTheLogWhoeverComesFirst) {
  for (const uid_t first : {uid_t{0}, kSomebody}) {
    for (const char* mask : {"022", "077"}) {
      SCOPED_TRACE(std::to_string(first) + " first, umask " + mask);
      const LogArea fresh;
      if (first != 0) MakeFolderAndFile();
      EXPECT_EQ(StatusOf(StartWriter({"10"}, first, mask)), 0);
      std::vector<Writer> writers;
      for (const uid_t user : {kSomebody, kSomebodyElse, uid_t{0}})
        writers.push_back(StartWriter({"300"}, user, mask));
      for (const Writer& writer : writers) EXPECT_EQ(StatusOf(writer), 0);
      EXPECT_EQ(WholeRecords().size(), 910u);
    }
  }
}

// As an earlier version left it.
TEST_F(LogUsersTest, KeptOutOfTheControlBlockGoOnWithoutALog) {
  MakeFolderAndFile();
  const int block = shm_open(ControlBlockName(true).c_str(), O_RDWR | O_CREAT | O_EXCL, 0644);
  ASSERT_GE(block, 0);
  close(block);
  EXPECT_EQ(StatusOf(StartWriter({"1"}, kSomebody), seconds(3)), 2) << "waited for itself";
  EXPECT_EQ(StatusOf(StartWriter({"1"})), 0);
  EXPECT_EQ(StatusOf(StartWriter({"1"}, kSomebody)), 0) << "its maker has mended it";
}

// Killed between making the lock and setting it free.
TEST(LogLockTest, LockWhoseMakerDiedIsSetFree) {
  const TempDir folder;
  const int lock = semget(ftok(folder.path().c_str(), kLogLockProject), 1, IPC_CREAT | 0666);
  ASSERT_GT(lock, 0);
  ASSERT_TRUE(LogLockInit(folder.path().c_str()));
  EXPECT_EQ(semctl(lock, 0, GETVAL), 0) << "its maker may still be at it";
  const auto limit = std::chrono::steady_clock::now() + seconds(10);
  while (semctl(lock, 0, GETVAL) == 0 && std::chrono::steady_clock::now() < limit) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ASSERT_TRUE(LogLockInit(folder.path().c_str()));
  }
  EXPECT_EQ(semctl(lock, 0, GETVAL), 1);
  semctl(lock, 0, IPC_RMID);
  semid = 0;
}

TEST_F(LogUsersTest, NoMemoryForTheControlBlockIsNoCrash) {
  Subprocess::Command spec;
  spec.arguments = {"unshare",
                    "--mount",
                    "sh",
                    "-c",
                    "mount -t tmpfs -o size=4k none /dev/shm || exit 1\n"
                    "head -c 4k /dev/zero >/dev/shm/full; exec \"$0\" 1",
                    LOG_WRITER};
  const Subprocess::End end = RunToEnd(spec, seconds(20));
  if (end.exit_status == 1) GTEST_SKIP() << "no mount namespaces here";
  EXPECT_EQ(end.exit_status, 2) << end.err << "signal " << end.signal;
}

}  // namespace
