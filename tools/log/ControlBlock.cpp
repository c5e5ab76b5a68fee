#include "tools/log/ControlBlock.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>

#include "libs/kxaccess/InstallPaths.h"
#include "platform/SemaphoreWait.h"
#include "platform/SharedMemoryName.h"

namespace log_reader {

namespace {

constexpr size_t kSize = 3120;
constexpr uint32_t kMagic = 0xD5106A91;
constexpr size_t kSizeAt = 0, kMagicAt = 4, kLevelAt = 32, kUpdatesAt = 36, kPathAt = 1068;
constexpr size_t kPathRoom = 1024;
constexpr uint32_t kFirstLevel = 3;
constexpr int kLockProject = 1;
constexpr std::chrono::seconds kLockPatience(3);

// Whose lock and control block.
enum class Whose { kMachine, kUser };

std::string NameOf(Whose whose) {
  return whose == Whose::kMachine
             ? SharedMemoryName("/Corvane Secure/debuglog.shm", InstallPaths::kRoot,
                                SharedAmong::kAllUsers)
             : SharedMemoryName("/Library/Users/debuglog.shm", InstallPaths::kRoot,
                                SharedAmong::kProcessesOfTheUser);
}

std::string LockFolder(Whose whose) {
  if (whose == Whose::kMachine) return InstallPaths::kLogFolder;
  const passwd* const user = getpwuid(getuid());
  return std::string(user ? user->pw_dir : "~") + "/Library/Logs/Corvane Secure/Logging";
}

// The mapped block. Whoever takes its memory away while it is in use ends this process.
class Block {
 public:
  Block(Whose whose, bool writable) : name_(NameOf(whose)) {
    const int file = shm_open(name_.c_str(), writable ? O_RDWR : O_RDONLY, 0);
    struct stat info;
    if (file < 0) {
      missing_ = errno == ENOENT;
      problem_ = strerror(errno);
      return;
    }
    if (fstat(file, &info) == 0 && static_cast<size_t>(info.st_size) >= kSize) {
      void* const bytes =
          mmap(nullptr, kSize, writable ? PROT_READ | PROT_WRITE : PROT_READ, MAP_SHARED, file, 0);
      if (bytes != MAP_FAILED) bytes_ = static_cast<char*>(bytes);
    }
    close(file);
    if (!bytes_) problem_ = "it is not set up";
  }
  ~Block() {
    if (bytes_) munmap(bytes_, kSize);
  }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;

  bool missing() const { return missing_; }

  // Why it cannot be used; empty when it can. May change at any time without the lock.
  std::string Problem() const {
    if (!problem_.empty()) return name_ + ": " + problem_;
    if (Number(kSizeAt) == 0) return name_ + ": it is not set up";
    if (Number(kSizeAt) != kSize || Number(kMagicAt) != kMagic) {
      return name_ + ": it holds something else";
    }
    return Path().empty() ? name_ + ": it names no log, so the next program sets it up anew" : "";
  }

  // Empty when there cannot be a log at what it names.
  std::string Path() const {
    const std::string path(bytes_ + kPathAt, strnlen(bytes_ + kPathAt, kPathRoom - 1));
    if (path.find("..") != std::string::npos) return "";
    for (const char* const folder :
         {InstallPaths::kMachineLogPrefix, InstallPaths::kUserLogPrefix}) {
      if (path.rfind(folder, 0) == 0) return path;
    }
    return "";
  }

  uint32_t Number(size_t at) const { return __atomic_load_n(Word(at), __ATOMIC_RELAXED); }
  void SetNumber(size_t at, uint32_t value) { __atomic_store_n(Word(at), value, __ATOMIC_RELAXED); }

 private:
  uint32_t* Word(size_t at) const { return reinterpret_cast<uint32_t*>(bytes_ + at); }

  const std::string name_;
  char* bytes_ = nullptr;
  bool missing_ = false;
  std::string problem_;
};

// The log's lock, held as long as the object lives; the system releases it if the process ends.
class Lock {
 public:
  explicit Lock(Whose whose) {
    const std::string folder = LockFolder(whose);
    const key_t key = ftok(folder.c_str(), kLockProject);
    set_ = key == -1 ? -1 : semget(key, 0, 0);
    if (set_ < 0) {
      problem_ = "no lock for " + folder + ": " + strerror(errno);
    } else if (!(held_ = TakeSemaphore(set_, kLockPatience))) {
      problem_ = "the log's lock, semaphore " + std::to_string(set_) + ": ";
      problem_ += errno == EAGAIN
                      ? "held, last by process " + std::to_string(semctl(set_, 0, GETPID))
                      : strerror(errno);
    }
  }
  ~Lock() {
    sembuf release = {0, 1, SEM_UNDO};
    if (held_) semop(set_, &release, 1);
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  const std::string& problem() const { return problem_; }

 private:
  int set_ = -1;
  bool held_ = false;
  std::string problem_;
};

// The user's own only where there is none for the machine.
Whose Shared() { return Block(Whose::kMachine, false).missing() ? Whose::kUser : Whose::kMachine; }

std::string ProblemOf(const Block& block) {
  return block.missing() ? "no program has written to the log since the computer was started"
                         : block.Problem();
}

}  // namespace

std::string LogPathInControlBlock() {
  for (const Whose whose : {Whose::kMachine, Whose::kUser}) {
    const Block block(whose, false);
    if (block.Problem().empty()) return block.Path();
  }
  return "";
}

std::string ReadLevel(int& level) {
  const Block block(Shared(), false);
  const std::string problem = ProblemOf(block);
  // Nobody reads a level that has never been set.
  if (problem.empty()) {
    level = static_cast<int>(block.Number(kUpdatesAt) ? block.Number(kLevelAt) : kFirstLevel);
  }
  return problem;
}

std::string SetLevel(int level) {
  const Whose whose = Shared();
  Block block(whose, true);
  if (const std::string problem = ProblemOf(block); !problem.empty()) return problem;
  const Lock lock(whose);
  if (!lock.problem().empty()) return lock.problem();
  // Somebody may have been setting it up.
  if (const std::string problem = block.Problem(); !problem.empty()) return problem;
  block.SetNumber(kLevelAt, static_cast<uint32_t>(level));
  // 0 is what a process begins with, so it would not notice.
  const uint32_t updates = block.Number(kUpdatesAt) + 1;
  block.SetNumber(kUpdatesAt, updates ? updates : 1);
  return "";
}

}  // namespace log_reader
