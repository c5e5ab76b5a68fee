#include "tools/starter/ReturnSegment.h"

#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace ebStarter {

namespace {

constexpr size_t kSize = 4096;
constexpr char kProjectId = 'R';
constexpr int kMode = 0600;

void* const kFailed = reinterpret_cast<void*>(-1);

}  // namespace

std::string DataFolder(const std::string& home) {
  return home + "/Library/Application Support/Corvane Secure/";
}

std::error_code MakeDataFolder(const std::string& folder) {
  std::error_code error;
  const std::filesystem::path last = std::filesystem::path(folder).parent_path();
  std::filesystem::create_directories(last.parent_path(), error);
  if (mkdir(last.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    error.assign(errno, std::generic_category());
  }
  return error;
}

ReturnSegment::ReturnSegment(const std::string& folder) {
  const std::error_code error = MakeDataFolder(folder);
  key_ = ftok(folder.c_str(), kProjectId);
  if (key_ == -1) {
    throw std::runtime_error("the data folder " + folder + " cannot be used: " +
                             (error ? error.message() : std::strerror(errno)));
  }
}

ReturnSegment::~ReturnSegment() { Remove(); }

int ReturnSegment::CreatorIn(const std::string& folder) {
  const int id = shmget(ftok(folder.c_str(), kProjectId), 0, 0);
  shmid_ds info;
  return id != -1 && shmctl(id, IPC_STAT, &info) == 0 ? info.shm_cpid : 0;
}

bool ReturnSegment::Prepare() const {
  if (!Remove()) return false;
  const int id = shmget(key_, kSize, IPC_CREAT | IPC_EXCL | kMode);
  return id != -1 || errno != EEXIST;
}

std::string ReturnSegment::Read() const {
  const int id = shmget(key_, kSize, 0);
  if (id == -1 && errno == ENOENT) return "";
  void* const memory = id == -1 ? kFailed : shmat(id, nullptr, SHM_RDONLY);
  if (memory == kFailed) throw std::system_error(errno, std::generic_category());
  const char* const text = static_cast<const char*>(memory);
  std::string read(text, strnlen(text, kSize));
  shmdt(memory);
  return read;
}

bool ReturnSegment::Remove() const {
  const int id = shmget(key_, 0, 0);
  if (id == -1) return errno == ENOENT;
  return shmctl(id, IPC_RMID, nullptr) == 0;
}

}  // namespace ebStarter
