// Joining the log: which control block, lock and file a process gets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "platform/SharedMemoryName.h"
#include "tests/support/LogArea.h"

namespace {

std::string g_home;

}  // namespace

// Takes the place of the system's: tests must not write to the home of the user who runs them.
extern "C" passwd* getpwuid(uid_t) {
  static char name[] = "jane q user";
  static passwd user = {};
  user.pw_name = name;
  user.pw_dir = g_home.data();
  return g_home.empty() ? nullptr : &user;
}

namespace {

class AttachTest : public testing::Test {
 protected:
  void SetUp() override { g_home = home_.path(); }
  void TearDown() override { g_home.clear(); }

  TempDir home_;
  LogArea area_;
};

TEST_F(AttachTest, ControlBlockOfThisAndOfOtherProcesses) {
  ASSERT_EQ(KXLogInitialize(), 1);
  const uint8_t head[] = {0x30, 0x0c, 0, 0, 0x91, 0x6a, 0x10, 0xd5, 5, 0, 0, 0, 0, 0, 0,    0,
                          0,    0,    0, 0, 0,    0,    0,    0,    0, 0, 0, 0, 0, 0, 0x90, 1};
  EXPECT_EQ(memcmp(pShareMemory, head, sizeof(head)), 0);
  EXPECT_STREQ(static_cast<char*>(pShareMemory) + 1068, InstallPaths::kLogFile);
  EXPECT_EQ(bUseGlobalSession, 1);
  EXPECT_EQ(semctl(semid, 0, GETVAL), 1);

  // Of others it is kept, unless its log lies elsewhere.
  ControlBlock()->maximum_size = 12345;
  KXLogCleanup();
  EXPECT_EQ(pShareMemory, nullptr);
  ASSERT_EQ(KXLogInitialize(), 1);
  EXPECT_EQ(ControlBlock()->maximum_size, 12345u);

  snprintf(ControlBlock()->path, sizeof(ControlBlock()->path), "/elsewhere/debuglog.log");
  KXLogCleanup();
  ASSERT_EQ(KXLogInitialize(), 1);
  EXPECT_EQ(ControlBlock()->maximum_size, kLogMaximumSize);
  EXPECT_STREQ(ControlBlock()->path, InstallPaths::kLogFile);
}

TEST_F(AttachTest, FallsBackToTheUsersOwnLog) {
  std::filesystem::create_directories(InstallPaths::kRoot);
  std::ofstream(std::string(InstallPaths::kRoot) + "/var") << "in the way";
  ASSERT_EQ(KXLogInitialize(), 1);
  EXPECT_EQ(bUseGlobalSession, 0);
  const std::string folder = home_.path() + "/Library/Logs/Corvane Secure/Logging";
  EXPECT_TRUE(std::filesystem::is_directory(folder));
  EXPECT_EQ(folder + "/debuglog.log", ControlBlock()->path);
  // The check of the path rejects files below a home folder. Kept on purpose.
  EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "m"), 0);
  EXPECT_FALSE(std::filesystem::exists(ControlBlock()->path));
}

TEST_F(AttachTest, LogNameFromTheEnvironment) {
  const std::string below = InstallPaths::kMachineLogPrefix;
  const std::string longest = below + std::string(1019 - below.size(), 'x');
  const struct {
    std::string name;
    std::string path;
    bool writable;
  } cases[] = {
      {below + "other.log", below + "other.log", true},
      {longest + "x", InstallPaths::kLogFile, true},
      {longest, longest, false},  // accepted, but no file system takes the name
      {home_.file("own.log"), home_.file("own.log"), false},
  };
  for (const auto& c : cases) {
    LogArea fresh;
    setenv("VELD_LOG_NAME", c.name.c_str(), 1);
    ASSERT_EQ(KXLogInitialize(), 1);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "m") > 0, c.writable);
    EXPECT_EQ(ControlBlock()->path, c.path);
    EXPECT_EQ(LogArea::Lines(c.path).size(), c.writable ? 3u : 0u) << c.name;
  }
}

// Every record of every thread makes the process leave and join the log.
TEST_F(AttachTest, ResetsOnManyThreads) {
  setenv("VELD_LOG_NAME", home_.file("own.log").c_str(), 1);
  ASSERT_EQ(KXLogInitialize(), 1);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < 5000; ++i) KXLOG(1, "T", "m");
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(KXLogInitialize(), 1);
  EXPECT_EQ(semctl(semid, 0, GETVAL), 1);
}

TEST_F(AttachTest, SharedMemoryNames) {
  EXPECT_STREQ(GetMmfName(true), "/Corvane Secure/debuglog.shm");
  EXPECT_STREQ(GetMmfName(false), "/Library/Users/debuglog.shm");
  EXPECT_EQ(StagingSuffix(""), "");
  EXPECT_EQ(StagingSuffix("a"), ".e40c292c");  // stable between builds
  EXPECT_EQ(SharedMemoryName(GetMmfName(true), "", SharedAmong::kAllUsers),
            "/Corvane Secure_debuglog.shm");
  EXPECT_EQ(SharedMemoryName(GetMmfName(false), "", SharedAmong::kProcessesOfTheUser),
            "/Library_Users_debuglog.shm." + std::to_string(getuid()));
}

}  // namespace
