#include "libs/kxlog/kxLogService/Mac/kxMacLogServiceFile.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

FILE* g_hLogFile = nullptr;
uint32_t CurrentLogRotationCount = 0;

namespace {

constexpr mode_t kFolderMode = 0755;
constexpr mode_t kFileMode = 0666;
constexpr size_t kLongestPath = 1023;

// Holds a header and a record, so that one write takes them to the file together.
char s_FileBuffer[8192];

bool Exists(const char* path) {
  struct stat info;
  return stat(path, &info) == 0;
}

bool MakeFolder(const char* path) {
  return Exists(path) || mkdir(path, kFolderMode) == 0 || errno == EEXIST;
}

bool HasPrefix(const char* path, const char* prefix) {
  return strncasecmp(path, prefix, strlen(prefix)) == 0;
}

long FileSize(FILE* file) {
  struct stat info;
  return fstat(fileno(file), &info) == 0 ? static_cast<long>(info.st_size) : 0;
}

void CloseLogFile() {
  fclose(g_hLogFile);
  g_hLogFile = nullptr;
}

// This process may update the control block, which others read too.
bool UpdatesSharedBlock() { return IsShareMemoryReadWriteView() && !IsShareMemoryPrivate(); }

bool UpdatesBlock() {
  return pShareMemory != nullptr && (IsShareMemoryReadWriteView() || IsShareMemoryPrivate());
}

// Renames the closed file to its ".old" name, replacing an older one.
bool RotateFile(const char* path) {
  LogControlBlock* block = ControlBlock();
  std::string old_path = std::string(path) + ".old";
  if (old_path.size() > kLongestPath) old_path.resize(kLongestPath);
  block->rotation_state = kLogRotating;
  if (rename(path, old_path.c_str()) != 0 && errno != ENOENT) {
    block->rotation_state = kLogRotated;
    return false;
  }
  block->previous_size = block->file_size;
  CurrentLogRotationCount = ++block->generation;
  block->file_size = 0;
  block->rotation_state = kLogRotated;
  return true;
}

// Closes the open file when it is no longer the one to write to. Returns false when it is full and
// cannot be rotated.
bool CloseOutdatedFile(const char* path) {
  if (g_hLogFile != nullptr && UpdatesBlock()) {
    if (ControlBlock()->generation != CurrentLogRotationCount) {
      CloseLogFile();
    } else if (static_cast<unsigned long>(FileSize(g_hLogFile)) >= ControlBlock()->maximum_size) {
      CloseLogFile();
      if (!RotateFile(path)) return false;
    }
  }
  if (g_hLogFile != nullptr && !Exists(path)) CloseLogFile();
  return true;
}

bool OpenLogFile(const char* path, int* resetRequested) {
  if (UpdatesSharedBlock() && !IsValidLogFilePathInSHM(path)) {
    if (resetRequested != nullptr) *resetRequested = 1;
    return false;
  }
  g_hLogFile = CreateLogFile(path);
  if (g_hLogFile == nullptr) return false;
  setvbuf(g_hLogFile, s_FileBuffer, _IOFBF, sizeof(s_FileBuffer));
  LogControlBlock* block = ControlBlock();
  if (block == nullptr) return true;
  CurrentLogRotationCount = block->generation;
  if (block->file_size == 0 && UpdatesSharedBlock()) {
    block->file_size = static_cast<uint32_t>(FileSize(g_hLogFile));
  }
  return true;
}

// Returns the number of bytes handed to the file.
size_t Append(const char* header, const char* record) {
  fseek(g_hLogFile, FileSize(g_hLogFile), SEEK_SET);
  size_t bytes = fwrite(header, 1, strlen(header), g_hLogFile);
  if (bytes == strlen(header)) bytes += fwrite(record, 1, strlen(record), g_hLogFile);
  fflush(g_hLogFile);
  return bytes;
}

}  // namespace

bool CreateLogDirectory(const char* path) {
  if (Exists(path)) {
    if (!IsSymLink(path)) return true;
    if (unlink(path) != 0) return false;
  }
  if (path[0] == '\0') return true;
  const std::string whole = path;
  for (size_t slash = whole.find('/', 1); slash != std::string::npos;
       slash = whole.find('/', slash + 1)) {
    if (!MakeFolder(whole.substr(0, std::min(slash, kLongestPath)).c_str())) return false;
  }
  return MakeFolder(whole.substr(0, kLongestPath).c_str());
}

bool IsSymLink(const char* path) {
  struct stat info;
  return lstat(path, &info) == 0 && S_ISLNK(info.st_mode);
}

FILE* CreateLogFile(const char* path) {
  errno = 0;
  int flags = O_RDWR | O_NOFOLLOW | O_CLOEXEC;
  if (IsSymLink(path)) {
    if (unlink(path) != 0) return nullptr;
    flags |= O_CREAT;
  } else if (!Exists(path)) {
    flags |= O_CREAT;
  }
  const int fd = open(path, flags, kFileMode);
  if (fd < 0) return nullptr;
  FILE* file = fdopen(fd, "a");
  if (file == nullptr) {
    close(fd);
    return nullptr;
  }
  // Only its owner may change a file's mode, so one that has it already is left alone.
  struct stat info;
  const bool has_mode = fstat(fd, &info) == 0 && (info.st_mode & 07777) == kFileMode;
  if (!has_mode && fchmod(fd, kFileMode) != 0) {
    fclose(file);
    return nullptr;
  }
  return file;
}

bool IsValidLogFilePathInSHM(const char* path) {
  if (path == nullptr || path[0] == '\0' || IsSymLink(path)) return false;
  const std::string copy(path, strnlen(path, kLongestPath));
  if (HasPrefix(copy.c_str(), InstallPaths::kUserLogPrefix)) return !IsSymLink(copy.c_str());
  return HasPrefix(copy.c_str(), InstallPaths::kMachineLogPrefix);
}

bool LogData(const char* header, const char* record, int* resetRequested) {
  // A copy, so that what is checked and what is opened are the same whoever writes to the block.
  char path[kLongestPath + 1] = "";
  if (pShareMemory != nullptr) memcpy(path, ControlBlock()->path, kLongestPath);

  if (!CloseOutdatedFile(path)) return false;
  if (g_hLogFile == nullptr && !OpenLogFile(path, resetRequested)) return false;

  const size_t bytes = Append(header, record);
  if (UpdatesBlock()) ControlBlock()->file_size += static_cast<uint32_t>(bytes);
  return true;
}

void LogProtectionCleanUp() {}
