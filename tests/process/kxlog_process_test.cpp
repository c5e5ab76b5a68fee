// Several processes on one log.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <random>
#include <thread>

#include "platform/SharedMemoryName.h"
#include "tests/support/LogArea.h"
#include "tests/support/LogRecords.h"
#include "tests/support/Subprocess.h"

using std::chrono::seconds;

namespace {

using Writer = std::unique_ptr<Subprocess>;

Writer StartWriter(const std::string& argument) {
  Subprocess::Command spec;
  spec.arguments = {LOG_WRITER, argument};
  return std::make_unique<Subprocess>(spec);
}

// log_writer's status; -1 when it had to be killed.
int StatusOf(const Writer& writer, seconds limit = seconds(60)) {
  return writer->Wait(limit).value_or(Subprocess::End()).exit_status;
}

// All records of a log, each of them whole.
std::vector<LogRecord> WholeRecords(const std::string& path = InstallPaths::kLogFile) {
  std::string fault;
  const std::vector<LogRecord> records = ReadLog(path, 0, &fault);
  EXPECT_EQ(fault, "");
  return records;
}

class LogProcessTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KXLogInitialize(), 1);
    ControlBlock()->maximum_size = 64 * 1024;
  }

  LogArea area_;
};

TEST_F(LogProcessTest, ManyWritersAndRotations) {
  constexpr int kRecords = 3000;
  std::vector<Writer> writers;
  for (int i = 0; i < 5; ++i) writers.push_back(StartWriter(std::to_string(kRecords)));
  for (const Writer& writer : writers) EXPECT_EQ(StatusOf(writer), 0) << "records were lost";
  EXPECT_GT(ControlBlock()->generation, 30u);

  const std::string path = InstallPaths::kLogFile;
  EXPECT_GE(std::filesystem::file_size(path + ".old"), ControlBlock()->maximum_size);
  EXPECT_EQ(std::filesystem::file_size(path + ".old"), ControlBlock()->previous_size);
  EXPECT_EQ(std::filesystem::file_size(path), ControlBlock()->file_size);

  std::map<pid_t, int> last;
  for (const std::string& file : {path + ".old", path}) {
    for (const LogRecord& record : WholeRecords(file)) {
      const int number = std::stoi(record.text.substr(record.text.rfind(' ')));
      const auto [known, first] = last.try_emplace(record.process, number);
      EXPECT_TRUE(first || number == known->second + 1) << record.text;
      known->second = number;
    }
  }
  EXPECT_FALSE(last.empty());
  for (const auto& [process, number] : last) EXPECT_EQ(number, kRecords) << "process " << process;
}

TEST_F(LogProcessTest, WritersKilledAtRandomPoints) {
  std::minstd_rand random(20);
  for (int round = 0; round < 15; ++round) {
    std::vector<Writer> writers;
    for (int i = 0; i < 3; ++i) writers.push_back(StartWriter("100000000"));
    for (const Writer& writer : writers) {
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 10000));
      ASSERT_TRUE(writer->Signal(SIGKILL));
    }
    for (const Writer& writer : writers) ASSERT_TRUE(writer->Wait(seconds(20)));
    // Another process, so that a lock that never comes free fails the test instead of hanging it.
    ASSERT_EQ(StatusOf(StartWriter("1"), seconds(20)), 0) << "the lock did not come free";
  }
  EXPECT_EQ(semctl(semid, 0, GETVAL), 1);
}

TEST_F(LogProcessTest, StoppedHolderCostsFiveSecondsOnceAndItsRecordsOnly) {
  const Writer holder = StartWriter("hold");
  ASSERT_TRUE(holder->WaitForOutput("held", seconds(20)));
  holder->Signal(SIGSTOP);
  const Writer late = StartWriter("1");
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 200; ++i) EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "m"), 0);
  const auto taken = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(taken, seconds(5));
  EXPECT_LT(taken, seconds(7));
  EXPECT_EQ(StatusOf(late, seconds(5)), 2) << "a process that comes later waits for ever";
  holder->Signal(SIGKILL);
  ASSERT_TRUE(holder->Wait(seconds(10)));
  EXPECT_GT(_KXLogEntryNew(1, "s", 1, "T", "m"), 0);
}

TEST_F(LogProcessTest, FullDiskLeavesNoTornRecord) {
  ControlBlock()->maximum_size = kLogMaximumSize;
  Subprocess::Command spec;
  spec.arguments = {"sh", "-c", "trap '' XFSZ; ulimit -f 16; exec \"$0\" 500", LOG_WRITER};
  EXPECT_EQ(RunToEnd(spec, seconds(20)).exit_status, 0)
      << "a record without room counts as written";
  ASSERT_GT(_KXLogEntryNew(1, "s", 1, "T", "behind"), 0);
  const size_t count = WholeRecords().size();
  EXPECT_GT(count, 20u);
  EXPECT_LT(count, 400u);
  EXPECT_EQ(ControlBlock()->file_size, std::filesystem::file_size(InstallPaths::kLogFile));
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
    Subprocess::Command probe;
    probe.arguments = {"setpriv", "--reuid=65534", "--clear-groups", "test", "-x", LOG_WRITER};
    if (RunToEnd(probe, seconds(20)).exit_status != 0)
      GTEST_SKIP() << "others cannot see the build";
  }

  static Writer Start(uid_t user, const char* records, const std::string& mask = "022") {
    const std::string id = std::to_string(user);
    Subprocess::Command spec;
    spec.arguments = {"setpriv",
                      "--reuid=" + id,
                      "--regid=" + id,
                      "--clear-groups",
                      "sh",
                      "-c",
                      "umask " + mask + "; exec \"$0\" \"$1\"",
                      LOG_WRITER,
                      records};
    return std::make_unique<Subprocess>(spec);
  }
  static void MakeFolderAndFile() {
    std::filesystem::create_directories(InstallPaths::kLogFolder);
    std::ofstream(InstallPaths::kLogFile) << "";
    chmod(InstallPaths::kLogFile, 0666);
  }

  LogArea area_;
};

constexpr uid_t kSomebody = 65534;
constexpr uid_t kSomebodyElse = 65533;

TEST_F(LogUsersTest, ShareTheLogWhoeverComesFirst) {
  for (const uid_t first : {uid_t{0}, kSomebody}) {
    for (const char* mask : {"022", "077"}) {
      SCOPED_TRACE(std::to_string(first) + " first, umask " + mask);
      const LogArea fresh;
      if (first != 0) MakeFolderAndFile();
      EXPECT_EQ(StatusOf(Start(first, "10", mask)), 0);
      std::vector<Writer> writers;
      for (const uid_t user : {kSomebody, kSomebodyElse, uid_t{0}})
        writers.push_back(Start(user, "300", mask));
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
  EXPECT_EQ(StatusOf(Start(kSomebody, "1"), seconds(3)), 2) << "waited for itself";
  EXPECT_EQ(StatusOf(Start(0, "1")), 0);
  EXPECT_EQ(StatusOf(Start(kSomebody, "1")), 0) << "its maker has mended it";
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
