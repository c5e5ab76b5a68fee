#include "libs/kxlog/kxLogService/Mac/kxMacLogServiceFile.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/LogState.h"

FILE* g_hLogFile = nullptr;
uint32_t CurrentLogRotationCount = 0;

namespace {

constexpr mode_t kFolderMode = 0755;
constexpr size_t kLongestPath = 1023;
constexpr size_t kLongestLine = 4096 + 32;
constexpr off_t kLengthDigits = 5;  // a record begins with its length

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool Exists(const char* path) {
  struct stat info;
  return stat(path, &info) == 0;
}

// The umask must not keep other users from the machine-wide log.
void OpenFolderToAll(const char* path) {
  const int fd = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (fd < 0) return;
  struct stat info;
  if (fstat(fd, &info) == 0 && info.st_uid == geteuid()) fchmod(fd, kFolderMode);
  close(fd);
}

bool MakeFolder(const char* path) {
  if (Exists(path)) return true;
  if (mkdir(path, kFolderMode) != 0) return errno == EEXIST;
  if (bUseGlobalSession) OpenFolderToAll(path);
  return true;
}

bool HasPrefix(const char* path, const char* prefix) {
  return strncasecmp(path, prefix, strlen(prefix)) == 0;
}

off_t FileSize(FILE* file) {
  struct stat info;
  return fstat(fileno(file), &info) == 0 ? info.st_size : 0;
}

void CloseLogFile() {
  fclose(g_hLogFile);
  g_hLogFile = nullptr;
}

// This process may update the control block, which others read too.
bool UpdatesSharedBlock() { return bIsShareMemoryReadWriteView && !bIsShareMemoryPrivate; }

bool UpdatesBlock() {
  return pShareMemory != nullptr && (bIsShareMemoryReadWriteView || bIsShareMemoryPrivate);
}

bool IsRefused(const char* path) { return UpdatesSharedBlock() && !IsValidLogFilePathInSHM(path); }

enum class Named { kOpenFile, kNothing, kOther };

// What the path names now, and in `size` the size of the open file.
Named NamedBy(const char* path, off_t& size) {
  struct stat named, ours = {};
  const bool known = fstat(fileno(g_hLogFile), &ours) == 0;
  size = ours.st_size;
  if (lstat(path, &named) != 0) return Named::kNothing;
  const bool same = known && named.st_dev == ours.st_dev && named.st_ino == ours.st_ino;
  return same ? Named::kOpenFile : Named::kOther;
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

// A writer that is killed halfway leaves half a record behind what the control block has counted.
// By the block alone, which nobody needs to trust, at most that much of a file is cut off that
// begins like a record and has no line end.
void CutTornRecord(off_t size) {
  if (!UpdatesBlock()) return;
  const auto counted = static_cast<off_t>(ControlBlock()->file_size);
  char piece[kLongestLine];
  const off_t length = size - counted;
  if (length <= 0 || length > static_cast<off_t>(sizeof(piece))) return;
  const int fd = fileno(g_hLogFile);
  if (pread(fd, piece, static_cast<size_t>(length), counted) != length) return;
  const auto digits = static_cast<size_t>(std::min<off_t>(length, kLengthDigits));
  if (piece[length - 1] == '\n' || !std::all_of(piece, piece + digits, IsDigit)) return;
  if (ftruncate(fd, counted) != 0) return;  // then the line stays as it is
}

// Closes the open file when it is no longer the one to write to. Returns false when it is full and
// cannot be rotated.
bool CloseOutdatedFile(const char* path) {
  if (g_hLogFile == nullptr) return true;
  off_t size;
  const Named named = NamedBy(path, size);
  bool outdated = named != Named::kOpenFile;
  // Another file is not ours to rename, nor is a refused one; opening it decides what becomes of
  // it.
  if (UpdatesBlock() && named != Named::kOther) {
    if (ControlBlock()->generation != CurrentLogRotationCount) {
      outdated = true;
    } else if (size >= static_cast<off_t>(ControlBlock()->maximum_size)) {
      CloseLogFile();
      return IsRefused(path) || RotateFile(path);
    }
  }
  if (outdated) {
    CloseLogFile();
  } else {
    CutTornRecord(size);
  }
  return true;
}

bool OpenLogFile(const char* path, int* resetRequested) {
  if (IsRefused(path)) {
    if (resetRequested != nullptr) *resetRequested = 1;
    return false;
  }
  g_hLogFile = CreateLogFile(path);
  if (g_hLogFile == nullptr) return false;
  LogControlBlock* block = ControlBlock();
  if (block == nullptr) return true;
  CurrentLogRotationCount = block->generation;
  // What was counted of a file that somebody has moved away says nothing of this one.
  const off_t size = FileSize(g_hLogFile);
  const bool counted =
      size >= block->file_size && size - block->file_size <= static_cast<off_t>(kLongestLine);
  if ((block->file_size == 0 || !counted) && UpdatesSharedBlock()) {
    block->file_size = static_cast<uint32_t>(size);
  }
  CutTornRecord(size);
  return true;
}

// Returns the number of bytes by which the file has grown. One call takes header and record to the
// file together, past the stream's buffer, which would keep what a full disk does not take.
size_t Append(const char* header, const char* record) {
  const int fd = fileno(g_hLogFile);
  const iovec pieces[] = {{const_cast<char*>(header), strlen(header)},
                          {const_cast<char*>(record), strlen(record)}};
  const ssize_t whole = static_cast<ssize_t>(pieces[0].iov_len + pieces[1].iov_len);
  const ssize_t written = writev(fd, pieces, 2);
  if (written == whole) return static_cast<size_t>(whole);
  // Half a record would run into the next one.
  if (written <= 0 || ftruncate(fd, FileSize(g_hLogFile) - written) == 0) return 0;
  return static_cast<size_t>(written);
}

// Whether ".." is among the components, so that the path may lead out of the folder it begins with.
bool LeadsUp(const char* path) {
  for (const char* at = strstr(path, "/.."); at != nullptr; at = strstr(at + 1, "/..")) {
    if (at[3] == '/' || at[3] == '\0') return true;
  }
  return false;
}

bool LiesInLogFolder(const char* path) {
  if (LeadsUp(path)) return false;
  return HasPrefix(path, InstallPaths::kUserLogPrefix) ||
         HasPrefix(path, InstallPaths::kMachineLogPrefix);
}

// A link in the place of the log folder, or of one below it, leads out of it as well.
bool LeadsThroughLink(const std::string& path) {
  const bool own = HasPrefix(path.c_str(), InstallPaths::kUserLogPrefix);
  const size_t prefix =
      strlen(own ? InstallPaths::kUserLogPrefix : InstallPaths::kMachineLogPrefix);
  for (size_t slash = path.find('/', prefix - 1); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    if (IsSymLink(path.substr(0, slash).c_str())) return true;
  }
  return false;
}

}  // namespace

bool CreateLogDirectory(const char* path) {
  if (IsSymLink(path)) {
    if (unlink(path) != 0) return false;
  } else if (Exists(path)) {
    return true;
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
  struct stat info;
  bool exists = lstat(path, &info) == 0;
  // A second name may be that of somebody's secret, or make a secret of the log.
  if (exists && (S_ISLNK(info.st_mode) || (S_ISREG(info.st_mode) && info.st_nlink > 1))) {
    if (unlink(path) != 0) return nullptr;
    exists = false;
  }
  // Devices and the like are not even opened.
  if (exists && !S_ISREG(info.st_mode)) return nullptr;
  const int fd =
      open(path, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (exists ? 0 : O_CREAT),
           kLogFileMode);
  if (fd < 0) return nullptr;
  const bool usable = fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_nlink == 1 &&
                      // Only its owner may change a file's mode, so one that has it is left alone.
                      ((info.st_mode & 07777) == kLogFileMode || fchmod(fd, kLogFileMode) == 0);
  FILE* file = usable ? fdopen(fd, "a") : nullptr;
  if (file == nullptr) close(fd);
  return file;
}

bool IsValidLogFilePathInSHM(const char* path) {
  if (path == nullptr || path[0] == '\0' || IsSymLink(path)) return false;
  char copy[kLongestPath + 1];
  snprintf(copy, sizeof(copy), "%s", path);
  return LiesInLogFolder(copy) && !LeadsThroughLink(copy);
}

bool NamesLogFile(const LogControlBlock& block) {
  char path[sizeof(block.path)] = "";
  memcpy(path, block.path, sizeof(path) - 1);
  return IsValidLogFilePathInSHM(path);
}

void RemovePlantedLink(const char* path) {
  if (LiesInLogFolder(path) && IsSymLink(path)) unlink(path);
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
