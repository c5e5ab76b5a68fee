// Many writers on one log, and all that may happen to them, to the file and to the control block.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <random>
#include <thread>

#include "tests/process/LogWriters.h"

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr int kWriters = 8;
constexpr uint32_t kSeed = 20;

struct Size {
  int records;  // of each writer
  int kills;
  milliseconds rotation;
};

class LogTorture : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KXLogInitialize(), 1);
    fs::create_directories(archive_);
    std::ofstream(secret_) << "untouched";
    std::cout << "seed " << kSeed << std::endl;
  }

  void Torture(const Size& size);

  // What happens between two looks at the log.
  void Kill(int slot);
  void Move() { rename(path_.c_str(), NextName().c_str()); }
  void MoveAndLink(int (*link)(const char*, const char*)) {
    Move();
    link(secret_.c_str(), path_.c_str());
  }
  bool Look(bool zero, bool obstruct, milliseconds period);

  void Start(int slot) {
    writers_[slot] = StartWriter({std::to_string(records_), AcksOf(slot), std::to_string(slot)},
                                 users_ && slot > 5 ? kSomebody : 0);
  }
  std::string AcksOf(int slot) const { return archive_ + "/acks" + std::to_string(slot); }
  std::string NextName() { return archive_ + "/log" + std::to_string(++named_); }
  void CheckRecords();
  void CheckFolders(const std::string& also) const;

  LogArea area_;
  const std::string path_ = InstallPaths::kLogFile, old_ = path_ + ".old";
  const std::string archive_ = std::string(InstallPaths::kRoot) + "/archive";
  const std::string secret_ = archive_ + "/secret";
  const bool users_ = CanPlayUsers();
  std::minstd_rand random_{kSeed};
  Writer writers_[kWriters];
  Acks* acks_[kWriters] = {};
  int records_ = 0, named_ = 0, rotations_ = 0, dropped_ = 0;
  uint32_t generation_ = 0;
  Clock::time_point rotated_ = Clock::now();
};

void LogTorture::Kill(int slot) {
  if (!writers_[slot]->Signal(SIGKILL)) return;
  const auto end = writers_[slot]->Wait(seconds(20));
  ASSERT_TRUE(end) << "a killed writer does not go";
  ASSERT_TRUE(end->signal == SIGKILL || end->exit_status <= 1) << end->signal;
  Start(slot);
}

// Takes the rotated file out of the way before the next one replaces it, has the file rotated when
// that is due, and may do what needs the lock. Whether it has to come back soon for the next one.
bool LogTorture::Look(bool zero, bool obstruct, milliseconds period) {
  const bool locked = LogLock();
  EXPECT_TRUE(locked) << "the lock is stuck";
  if (!locked) return false;
  LogControlBlock* block = ControlBlock();
  if (fs::is_directory(old_)) fs::remove_all(old_);
  if (fs::exists(old_)) {
    fs::rename(old_, NextName());
    rotated_ = Clock::now();
    ++rotations_;
    if (block->generation > generation_ + 1) ++dropped_;
  }
  generation_ = block->generation;
  std::error_code none;
  const uintmax_t size = fs::exists(path_) ? fs::file_size(path_, none) : 0;
  // Not a small one, since the next would be full before the next look.
  const bool due = Clock::now() - rotated_ > period && size > 1024 * 1024;
  block->maximum_size = due ? static_cast<uint32_t>(size) : kLogMaximumSize;
  if (obstruct) {
    fs::create_directories(old_ + "/in the way");
    block->maximum_size = 1;
  }
  if (zero) memset(pShareMemory, 0, sizeof(LogControlBlock));
  LogUnlock();
  return due && !zero && !obstruct;
}

void LogTorture::Torture(const Size& size) {
  records_ = size.records;
  for (int slot = 0; slot < kWriters; ++slot) {
    const int file = open(AcksOf(slot).c_str(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(fchmod(file, 0666) | ftruncate(file, sizeof(Acks)), 0);
    void* mapped = mmap(nullptr, sizeof(Acks), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    ASSERT_NE(mapped, MAP_FAILED);
    acks_[slot] = static_cast<Acks*>(mapped);
    Start(slot);
  }
  int kills = 0;
  const auto progress = [&] {
    int begun = 0;
    for (const Acks* acks : acks_) begun += acks->begun;
    return static_cast<double>(begun) / (kWriters * size.records);
  };
  const auto limit = Clock::now() + seconds(240);
  while (progress() < 1) {
    ASSERT_LT(Clock::now(), limit) << "the writers do not get on";
    std::this_thread::sleep_for(std::chrono::microseconds(random_() % 10000));
    const int what = static_cast<int>(random_() % 60);
    if (what == 0) Move();
    if (what == 1) MoveAndLink(symlink);
    if (what == 2) MoveAndLink(link);
    bool due = Look(what == 3, what == 4, size.rotation);
    for (int i = 0; due && i < 100; ++i) due = Look(false, false, size.rotation);
    for (; kills < size.kills * progress() && !HasFatalFailure(); ++kills) {
      const int slot = static_cast<int>(random_() % kWriters);
      std::this_thread::sleep_for(std::chrono::microseconds(random_() % 2000));
      Kill(slot);
    }
  }
  // One that was too slow for a record exits with 4.
  for (const Writer& writer : writers_) EXPECT_LE(static_cast<unsigned>(StatusOf(writer)), 1u);
  EXPECT_EQ(semctl(semid, 0, GETVAL), 1);
  EXPECT_GE(kills, size.kills - 1);
  EXPECT_GT(rotations_, 0);
  CheckRecords();
  CheckFolders("log");
  for (Acks* acks : acks_) munmap(acks, sizeof(Acks));
}

// What a writer was told to be written is there, once and in order.
void LogTorture::CheckRecords() {
  std::map<std::pair<int, int>, std::vector<int>> parts;  // by writer and first number
  for (const char* const folder : {archive_.c_str(), InstallPaths::kLogFolder}) {
    for (const auto& file : fs::directory_iterator(folder)) {
      if (file.path().filename().string().find("log") == std::string::npos) continue;
      std::map<int, std::vector<int>> numbers;
      for (const LogRecord& record : WholeRecords(file.path())) {
        int writer = -1, number = 0;
        const size_t at = record.text.rfind(" of ");
        ASSERT_NE(at, std::string::npos) << record.text;
        ASSERT_EQ(sscanf(&record.text[at], " of %d number %d", &writer, &number), 2) << record.text;
        numbers[writer].push_back(number);
      }
      for (auto& [writer, list] : numbers) parts[{writer, list[0]}] = std::move(list);
    }
  }
  int written = 0, missing = 0;
  for (int slot = 0; slot < kWriters; ++slot) {
    std::vector<int> found = {0};
    for (const auto& [key, list] : parts) {
      if (key.first == slot) found.insert(found.end(), list.begin(), list.end());
    }
    EXPECT_EQ(std::adjacent_find(found.begin(), found.end(), std::greater_equal<int>()),
              found.end())
        << "out of order, writer " << slot;
    EXPECT_LE(found.back(), records_);
    for (int i = 1; i <= records_; ++i) {
      if (!acks_[slot]->written[i]) continue;
      ++written;
      if (!std::binary_search(found.begin(), found.end(), i)) ++missing;
    }
  }
  std::cout << written << " of " << kWriters * records_ << " records written, " << missing
            << " missing, " << rotations_ << " rotations, " << dropped_
            << " times more than one at once" << std::endl;
  EXPECT_GT(written, kWriters * records_ / 2);
  // Two rotations between two looks replace a file that nobody has read.
  if (dropped_ == 0) {
    EXPECT_EQ(missing, 0);
  }
}

// Nothing is written but to the log folder.
void LogTorture::CheckFolders(const std::string& name) const {
  EXPECT_EQ(ReadFile(secret_), "untouched");
  for (const auto& entry : fs::recursive_directory_iterator(InstallPaths::kRoot)) {
    const std::string path = entry.path();
    if (!entry.is_regular_file() || path.rfind(archive_, 0) == 0) continue;
    EXPECT_EQ(path.rfind(std::string(InstallPaths::kLogFolder) + "/", 0), 0u) << path;
    EXPECT_THAT(path, testing::HasSubstr(name));
  }
}

TEST_F(LogTorture, NothingIsLostOrTornOrStuck) { Torture({4000, 30, milliseconds(50)}); }

TEST_F(LogTorture, NothingIsLostOrTornOrStuckNightly) {
  Torture({Acks::kMost, 500, milliseconds(1000)});
}

// Whoever scribbles on the control block, or takes its memory away, takes no lock.
TEST_F(LogTorture, ScribbledAndShrunkControlBlockEndsNoWriter) {
  const int block = shm_open(ControlBlockName(true).c_str(), O_RDWR, 0);
  ASSERT_GE(block, 0);
  for (Writer& writer : writers_) writer = StartWriter({"1500"});
  for (int round = 0; round < 300; ++round) {
    std::this_thread::sleep_for(milliseconds(1));
    uint32_t bytes[16];
    for (uint32_t& word : bytes) word = static_cast<uint32_t>(random_());
    const auto at = static_cast<off_t>(random_() % sizeof(LogControlBlock));
    ASSERT_GT(pwrite(block, bytes, 1 + random_() % sizeof(bytes), at), 0);
    if (round % 10 == 0) {
      ASSERT_EQ(ftruncate(block, 0), 0);
    }
  }
  const std::string zeroes(sizeof(LogControlBlock), '\0');
  ASSERT_GT(pwrite(block, zeroes.data(), zeroes.size(), 0), 0);
  close(block);
  for (const Writer& writer : writers_) EXPECT_LE(static_cast<unsigned>(StatusOf(writer)), 1u);
  EXPECT_EQ(StatusOf(StartWriter({"1"})), 0);
  for (const auto& file : fs::directory_iterator(InstallPaths::kLogFolder)) {
    if (file.is_regular_file()) WholeRecords(file.path());
  }
  CheckFolders("");
}

}  // namespace
