// Several processes on one log.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <map>
#include <memory>
#include <random>
#include <regex>
#include <thread>

#include "testing/support/LogArea.h"
#include "testing/support/Subprocess.h"

using std::chrono::seconds;

namespace {

class LogProcessTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KXLogInitialize(), 1);
    ControlBlock()->maximum_size = 64 * 1024;
  }

  static std::unique_ptr<Subprocess> StartWriter(const std::string& argument) {
    Subprocess::Command spec;
    spec.arguments = {LOG_WRITER, argument};
    return std::make_unique<Subprocess>(spec);
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

TEST_F(LogProcessTest, LockOfAKilledHolderComesFree) {
  const auto holder = StartWriter("hold");
  ASSERT_TRUE(holder->WaitForOutput("held", seconds(20)));
  EXPECT_EQ(semctl(semid, 0, GETVAL), 0);
  holder->Signal(SIGKILL);
  ExpectLockIsFree();
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

}  // namespace
