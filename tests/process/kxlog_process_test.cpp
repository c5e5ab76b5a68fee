// Several processes on one log.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <random>
#include <regex>
#include <thread>

#include "platform/SharedMemoryName.h"
#include "tests/support/LogArea.h"
#include "tests/support/Subprocess.h"

using std::chrono::seconds;

namespace {

std::unique_ptr<Subprocess> StartWriter(const std::string& argument) {
  Subprocess::Command spec;
  spec.arguments = {LOG_WRITER, argument};
  return std::make_unique<Subprocess>(spec);
}

class LogProcessTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KXLogInitialize(), 1);
    ControlBlock()->maximum_size = 64 * 1024;
  }

  // A process of its own writes a record, so that a lock that never comes free fails the test
  // instead of hanging it.
  static void ExpectLockIsFree() {
    const auto end = StartWriter("1")->Wait(seconds(20));
    ASSERT_TRUE(end) << "the lock did not come free";
    EXPECT_EQ(end->exit_status, 0);
  }

  LogArea area_;
};

TEST_F(LogProcessTest, ManyWritersAndRotations) {
  constexpr int kRecords = 3000;
  std::vector<std::unique_ptr<Subprocess>> writers;
  for (int i = 0; i < 5; ++i) writers.push_back(StartWriter(std::to_string(kRecords)));
  for (const auto& writer : writers) {
    const auto end = writer->Wait(seconds(60));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->exit_status, 0) << "records were lost, or signal " << end->signal;
  }
  EXPECT_GT(ControlBlock()->generation, 30u);

  const std::string path = InstallPaths::kLogFile;
  std::vector<std::string> lines = LogArea::Lines(path + ".old");
  EXPECT_GE(std::filesystem::file_size(path + ".old"), ControlBlock()->maximum_size);
  EXPECT_EQ(std::filesystem::file_size(path + ".old"), ControlBlock()->previous_size);
  EXPECT_EQ(std::filesystem::file_size(path), ControlBlock()->file_size);
  for (const std::string& line : LogArea::Lines(path)) lines.push_back(line);

  const std::regex form(R"( p(\d+) t\S+ +log_writer\.cpp:\d+ - 'T' +number (\d+)\r\n$)");
  std::map<std::string, int> last;
  for (const std::string& line : lines) {
    ASSERT_EQ(LogArea::StatedLength(line), LogArea::Record(line).size()) << line;
    std::smatch match;
    ASSERT_TRUE(std::regex_search(line, match, form)) << line;
    const int number = std::stoi(match[2]);
    const auto known = last.find(match[1]);
    if (known != last.end()) {
      ASSERT_EQ(number, known->second + 1) << line;
    }
    last[match[1]] = number;
  }
  EXPECT_FALSE(last.empty());
  for (const auto& [process, number] : last) EXPECT_EQ(number, kRecords) << "process " << process;
}

TEST_F(LogProcessTest, WritersKilledAtRandomPoints) {
  std::minstd_rand random(20);
  for (int round = 0; round < 15; ++round) {
    std::vector<std::unique_ptr<Subprocess>> writers;
    for (int i = 0; i < 3; ++i) writers.push_back(StartWriter("100000000"));
    for (const auto& writer : writers) {
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 10000));
      ASSERT_TRUE(writer->Signal(SIGKILL));
    }
    for (const auto& writer : writers) ASSERT_TRUE(writer->Wait(seconds(20)));
    ExpectLockIsFree();
  }
  EXPECT_EQ(semctl(semid, 0, GETVAL), 1);
}

TEST_F(LogProcessTest, DeletedLogIsLostToNone) {
  std::vector<std::unique_ptr<Subprocess>> writers;
  for (int i = 0; i < 3; ++i) writers.push_back(StartWriter("20000"));
  ControlBlock()->maximum_size = kLogMaximumSize;
  for (int i = 0; i < 5; ++i) {
    while (LogArea::Lines().size() < 30) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::filesystem::remove(InstallPaths::kLogFile);
  }
  for (const auto& writer : writers) {
    EXPECT_EQ(writer->Wait(seconds(60)).value_or(Subprocess::End()).exit_status, 0);
  }
  size_t complete = 0;
  for (const std::string& line : LogArea::Lines())
    complete += line.find("number 20000\r") != line.npos;
  EXPECT_EQ(complete, writers.size());
}

TEST_F(LogProcessTest, StoppedHolderCostsFiveSecondsOnceAndItsRecordsOnly) {
  const auto holder = StartWriter("hold");
  ASSERT_TRUE(holder->WaitForOutput("held", seconds(20)));
  holder->Signal(SIGSTOP);
  const auto late = StartWriter("1");
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 200; ++i) EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "m"), 0);
  const auto taken = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(taken, seconds(5));
  EXPECT_LT(taken, seconds(7));
  const auto end = late->Wait(seconds(5));
  ASSERT_TRUE(end) << "a process that comes later waits for ever";
  EXPECT_EQ(end->exit_status, 2) << "it had the lock of a stopped process";
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
  const std::vector<std::string> lines = LogArea::Lines();
  EXPECT_GT(lines.size(), 20u);
  EXPECT_LT(lines.size(), 400u);
  for (const std::string& line : lines) {
    ASSERT_EQ(LogArea::StatedLength(line), LogArea::Record(line).size()) << line;
  }
  EXPECT_EQ(ControlBlock()->file_size, std::filesystem::file_size(InstallPaths::kLogFile));
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

  static std::unique_ptr<Subprocess> Start(uid_t user, int records, const char* mask = "022",
                                           const std::string& home = "/nonexistent") {
    const std::string id = std::to_string(user);
    Subprocess::Command spec;
    spec.arguments = {"setpriv",
                      "--reuid=" + id,
                      "--regid=" + id,
                      "--clear-groups",
                      "sh",
                      "-c",
                      "umask " + std::string(mask) + "; exec \"$0\" \"$1\"",
                      LOG_WRITER,
                      std::to_string(records)};
    spec.environment = {{"LOG_WRITER_HOME", home}};
    return std::make_unique<Subprocess>(spec);
  }
  // Ends with the status of log_writer; -1 when it had to be killed.
  static int StatusOf(const std::unique_ptr<Subprocess>& writer) {
    const auto end = writer->Wait(seconds(40));
    return end ? end->exit_status : -1;
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
  const struct {
    uid_t first;
    bool prepared;  // the folder and the file are there
  } cases[] = {{0, false}, {kSomebody, true}};
  for (const auto& c : cases) {
    for (const char* mask : {"022", "077"}) {
      SCOPED_TRACE(std::to_string(c.first) + " first, umask " + mask);
      LogArea fresh;
      if (c.prepared) MakeFolderAndFile();
      EXPECT_EQ(StatusOf(Start(c.first, 10, mask)), 0);
      const auto one = Start(kSomebody, 300, mask);
      const auto two = Start(kSomebodyElse, 300, mask);
      const auto root = Start(0, 300, mask);
      for (const auto* writer : {&one, &two, &root}) EXPECT_EQ(StatusOf(*writer), 0);
      EXPECT_EQ(LogArea::Lines().size(), 910u);
    }
  }
}

// As an earlier version left it.
TEST_F(LogUsersTest, KeptOutOfTheControlBlockGoOnWithoutALog) {
  MakeFolderAndFile();
  const int block = shm_open(ControlBlockName(true).c_str(), O_RDWR | O_CREAT | O_EXCL, 0644);
  ASSERT_GE(block, 0);
  close(block);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(StatusOf(Start(kSomebody, 1)), 2);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(3)) << "waited for itself";
  EXPECT_EQ(StatusOf(Start(0, 1)), 0);
  EXPECT_EQ(StatusOf(Start(kSomebody, 1)), 0) << "its maker has mended it";
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
