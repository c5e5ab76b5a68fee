#include "tools/starter/ReturnSegment.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace ebStarter {

namespace {

constexpr size_t kSize = 4096;
constexpr char kProjectId = 'R';

void* const kFailed = reinterpret_cast<void*>(-1);

}  // namespace

std::string DataFolder(const std::string& home) {
  return home + "/Library/Application Support/Corvane Secure/";
}

ReturnSegment::ReturnSegment(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  key_ = ftok(folder.c_str(), kProjectId);
  if (key_ == -1) {
    throw std::runtime_error("the data folder " + folder + " cannot be used: " +
                             (error ? error.message() : std::strerror(errno)));
  }
}

bool ReturnSegment::Clear() const {
  const int id = shmget(key_, 0, 0);
  if (id == -1) return errno == ENOENT;
  const int usable = shmget(key_, kSize, 0600);
  void* const memory = usable == -1 ? kFailed : shmat(usable, nullptr, 0);
  if (memory == kFailed) return shmctl(id, IPC_RMID, nullptr) == 0;
  std::memset(memory, 0, kSize);
  shmdt(memory);
  return true;
}

std::string ReturnSegment::Read() const {
  const int id = shmget(key_, kSize, 0);
  if (id == -1) return "";
  void* const memory = shmat(id, nullptr, SHM_RDONLY);
  if (memory == kFailed) return "";
  const char* const text = static_cast<const char*>(memory);
  std::string read(text, strnlen(text, kSize));
  shmdt(memory);
  return read;
}

void ReturnSegment::Remove() const {
  const int id = shmget(key_, 0, 0);
  if (id != -1) shmctl(id, IPC_RMID, nullptr);
}

}  // namespace ebStarter
