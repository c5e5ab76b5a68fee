// The log's folders and file: what is created, followed, rejected and rotated.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "tests/support/LogArea.h"

namespace fs = std::filesystem;

namespace {

class FileTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(KXLogInitialize(), 1); }

  static int Write(const char* text) { return _KXLogEntryNew(1, "s", 1, "T", "%s", text); }

  LogArea area_;
  TempDir dir_;
  const std::string path_ = InstallPaths::kLogFile;
  const std::string old_path_ = path_ + ".old";
};

TEST_F(FileTest, PathCheck) {
  const std::string root = InstallPaths::kRoot;
  const std::string link = std::string(InstallPaths::kMachineLogPrefix) + "link";
  fs::create_symlink("/nowhere", link);
  fs::create_directory_symlink(dir_.path(), std::string(InstallPaths::kMachineLogPrefix) + "out");
  const struct {
    std::string path;
    bool valid;
  } cases[] = {
      {root + "/VAR/LOG/corvane secure/LOGGING/x", true},
      {root + "/var/log/Corvane Secure/Logging", false},
      {root + "/var/log/Corvane Secure/LoggingX/debuglog.log", false},
      {root + "/library/logs/CORVANE Secure/any/debuglog.log", true},
      {"/root/Library/Logs/Corvane Secure/Logging/debuglog.log", false},
      {link, false},
      {root + "/var/log/Corvane Secure/Logging/out/x", false},
      {root + "/var/log/Corvane Secure/Logging/../../x", false},
      {root + "/var/log/Corvane Secure/Logging/x/..", false},
      {root + "/library/logs/corvane secure/../x", false},
      {root + "/var/log/Corvane Secure/Logging/..x..", true},
  };
  for (const auto& c : cases) EXPECT_EQ(IsValidLogFilePathInSHM(c.path.c_str()), c.valid) << c.path;
  EXPECT_FALSE(IsValidLogFilePathInSHM(nullptr));
}

TEST_F(FileTest, FoldersAndPlantedLinks) {
  dir_.write("target/kept", "");
  for (const char* link : {"planted", "ancestor"})
    fs::create_directory_symlink(dir_.file("target"), dir_.file(link));
  fs::create_symlink("/nowhere", dir_.file("dangling"));
  for (const char* folder : {"a/b/c", "a/b/c", "planted", "dangling", "ancestor/new"}) {
    EXPECT_TRUE(CreateLogDirectory(dir_.file(folder).c_str())) << folder;
    EXPECT_TRUE(fs::is_directory(fs::symlink_status(dir_.file(folder)))) << folder;
  }
  EXPECT_TRUE(fs::is_empty(dir_.file("planted")));
  EXPECT_TRUE(fs::exists(dir_.file("target/kept")));
  EXPECT_FALSE(CreateLogDirectory(dir_.file("target/kept/below").c_str()));
}

TEST_F(FileTest, PlantedLinksAreReplacedByAFileThatAllMayWrite) {
  const std::string secret = dir_.write("secret", "untouched");
  const std::string log = dir_.file("log");
  const mode_t mask = umask(077);
  for (const bool hard : {true, false}) {
    fs::remove(log);
    hard ? fs::create_hard_link(secret, log) : fs::create_symlink(secret, log);
    for (const char* text : {"record", " appended"}) {
      FILE* file = CreateLogFile(log.c_str());
      ASSERT_NE(file, nullptr);
      fputs(text, file);
      fclose(file);
    }
    EXPECT_EQ(ReadFile(log), "record appended");
    EXPECT_EQ(fs::status(log).permissions(), static_cast<fs::perms>(0666));
  }
  umask(mask);
  EXPECT_EQ(ReadFile(secret), "untouched");
  EXPECT_NE(fs::status(secret).permissions(), static_cast<fs::perms>(0666));
}

TEST_F(FileTest, PlantedPipeNeitherBlocksNorChanges) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(Write("lost"), 0);
  EXPECT_EQ(fs::status(path_).permissions(), static_cast<fs::perms>(0600));
}

TEST_F(FileTest, ADeletedOrReplacedFileDoesNotEndTheLog) {
  const std::string secret = dir_.write("secret", "untouched");
  for (const bool open : {false, true}) {
    fs::remove(path_);
    if (open) {
      ASSERT_GT(Write("one"), 0);
      fs::remove(path_);
    }
    fs::create_symlink(secret, path_);
    EXPECT_EQ(Write("asks for a new control block"), 0);
    EXPECT_GT(Write("two"), 0);
    EXPECT_THAT(LogArea::Lines(), testing::ElementsAre(testing::HasSubstr(" two\r\n")));
  }
  fs::remove(path_);
  EXPECT_GT(Write("three"), 0);
  EXPECT_THAT(LogArea::Lines(), testing::ElementsAre(testing::HasSubstr(" three\r\n")));
  EXPECT_EQ(ReadFile(secret), "untouched");
}

TEST_F(FileTest, AFolderReplacedByALinkIsNotFollowed) {
  ASSERT_GT(Write("one"), 0);
  const int lock = semid;
  const std::string folder = InstallPaths::kLogFolder;
  fs::rename(folder, folder + "2");
  fs::create_directory_symlink(dir_.path(), folder);
  EXPECT_EQ(Write("asks for a new control block"), 0);
  EXPECT_GT(Write("two"), 0);
  EXPECT_TRUE(fs::is_directory(fs::symlink_status(folder)));
  EXPECT_TRUE(fs::is_empty(dir_.path()));
  semctl(lock, 0, IPC_RMID);
}

TEST_F(FileTest, HalfARecordOfAKilledWriterIsCutOff) {
  const std::pair<const char*, bool> tails[] = {
      {"00123,09 2026/11/14 18:", false}, {"00", false}, {"a remark, no record", true}};
  for (const auto& [tail, kept] : tails) {
    for (const bool open : {true, false}) {
      const LogArea fresh;
      ASSERT_EQ(KXLogInitialize(), 1);
      ASSERT_GT(Write("one"), 0);
      std::ofstream(path_, std::ios::app) << tail;
      if (!open) fclose(std::exchange(g_hLogFile, nullptr));
      ASSERT_GT(Write("two"), 0);
      EXPECT_EQ(fs::file_size(path_), ControlBlock()->file_size + (kept ? strlen(tail) : 0))
          << tail;
    }
  }
}

// The level must not fall with it: the block that follows has none.
TEST_F(FileTest, ShrunkControlBlockCostsOneRecord) {
  ControlBlock()->trace_level = 5;
  ControlBlock()->level_updates = 7;
  ASSERT_GT(Write("one"), 0);
  const int block = shm_open(ControlBlockName(true).c_str(), O_RDWR, 0);
  ASSERT_EQ(ftruncate(block, 0), 0);
  close(block);
  EXPECT_EQ(Write("lost"), 0);
  EXPECT_GT(Write("two"), 0);
  EXPECT_EQ(ControlBlock()->path, path_);
}

// Whoever else writes to the control block.
TEST_F(FileTest, PlantedPathIsNeitherRotatedNorKept) {
  const std::string paths[] = {
      std::string(InstallPaths::kLogFolder) + "/../../../victim",
      dir_.file("victim"),
      std::string(InstallPaths::kLogFolder) + "/victim",
  };
  for (const std::string& victim : paths) {
    ASSERT_GT(Write("one"), 0);
    std::ofstream(victim) << "untouched";
    ControlBlock()->maximum_size = 1;
    snprintf(ControlBlock()->path, sizeof(ControlBlock()->path), "%s", victim.c_str());
    Write("to the victim at most");
    EXPECT_EQ(ReadFile(victim).substr(0, 9), "untouched") << victim;
    EXPECT_FALSE(fs::exists(victim + ".old"));
    memset(ControlBlock()->path, 'x', sizeof(ControlBlock()->path));  // no NUL
    EXPECT_EQ(Write("lost"), 0);
    EXPECT_EQ(ControlBlock()->path, path_);
  }
}

TEST_F(FileTest, RotatesAtTheLimitAndNotBefore) {
  ASSERT_GT(Write("one"), 0);
  const auto size = static_cast<uint32_t>(fs::file_size(path_));
  LogControlBlock* block = ControlBlock();
  block->maximum_size = size + 1;
  ASSERT_GT(Write("two"), 0);
  EXPECT_EQ(block->file_size, 2 * size);

  block->maximum_size = 2 * size;
  ASSERT_GT(Write("three"), 0);
  EXPECT_EQ(block->generation, 1u);
  EXPECT_EQ(block->rotation_state, kLogRotated);
  EXPECT_EQ(block->previous_size, 2 * size);
  EXPECT_EQ(block->file_size, fs::file_size(path_));
  EXPECT_EQ(LogArea::Lines(old_path_).size(), 2u);
  EXPECT_THAT(LogArea::Lines(), testing::ElementsAre(testing::HasSubstr(" three\r\n")));
}

TEST_F(FileTest, FailedRenameLosesTheRecordAndIsTriedAgain) {
  ASSERT_GT(Write("one"), 0);
  fs::create_directories(old_path_ + "/in the way");
  ControlBlock()->maximum_size = 1;
  EXPECT_EQ(Write("lost"), 0);
  EXPECT_EQ(ControlBlock()->rotation_state, kLogRotated);
  EXPECT_EQ(ControlBlock()->generation, 0u);
  EXPECT_EQ(LogArea::Lines().size(), 1u);

  // The full file was closed: it is opened again, and only the record after that rotates.
  fs::remove_all(old_path_);
  EXPECT_GT(Write("two"), 0);
  EXPECT_GT(Write("three"), 0);
  EXPECT_EQ(ControlBlock()->generation, 1u);
  EXPECT_EQ(LogArea::Lines(old_path_).size(), 2u);
}

// It must not go on writing to the old file.
TEST_F(FileTest, AnotherProcessHasRotated) {
  ASSERT_GT(Write("one"), 0);
  fs::rename(path_, old_path_);
  ++ControlBlock()->generation;
  ControlBlock()->file_size = 0;
  std::ofstream(path_) << "of another process\n";
  ASSERT_GT(Write("two"), 0);
  EXPECT_EQ(LogArea::Lines(old_path_).size(), 1u);
  EXPECT_EQ(LogArea::Lines().size(), 2u);
  EXPECT_EQ(ControlBlock()->file_size, fs::file_size(path_));
}

}  // namespace
