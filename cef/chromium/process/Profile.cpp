#include "cef/chromium/process/Profile.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>

#include "cef/chromium/process/AppWindow.h"
#include "cef/chromium/process/ChildProcess.h"
#include "cef/chromium/process/Preferences.h"
#include "cef/chromium/process/PrivateFolder.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kOthersMayWrite = S_IWGRP | S_IWOTH;
// Chromium does not run well, or not at all, on a file system that is full.
constexpr uint64_t kLeastRoom = 32ull << 20;
constexpr auto kLastMoments = std::chrono::seconds(1);

// Makes the folder and its parents where they are missing, for us alone.
bool MakeFolders(const fs::path& folder) {
  struct stat info;
  if (stat(folder.c_str(), &info) == 0) return S_ISDIR(info.st_mode);
  if (folder.has_relative_path() && !MakeFolders(folder.parent_path())) return false;
  return mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST;
}

bool OthersMayWrite(const std::string& folder) {
  struct stat info;
  return stat(folder.c_str(), &info) == 0 && (info.st_mode & kOthersMayWrite) != 0;
}

bool HasRoom(const std::string& folder) {
  struct statvfs info;
  return statvfs(folder.c_str(), &info) != 0 ||
         static_cast<uint64_t>(info.f_bavail) * info.f_frsize >= kLeastRoom;
}

// A Chromium that was killed leaves these behind. If they name another host (a home folder on a
// server, a renamed machine), the next start would wait behind a dialog.
void RemoveStaleLocks(const std::string& dir) {
  for (const char* name : {"SingletonLock", "SingletonSocket", "SingletonCookie"}) {
    unlink((dir + "/" + name).c_str());
  }
}

// What would grow from run to run and no sign-in needs: statistics, which are sent nowhere (4 MiB
// from every run that ends before Chromium thinks of deleting those of the last one), notes on how
// Chromium and each site are used (6 KiB a run), and what pages kept for windows that are gone.
void RemoveNotes(const std::string& dir) {
  for (const char* name : {"BrowserMetrics", "segmentation_platform", "Default/shared_proto_db",
                           "Default/Site Characteristics Database", "Default/DIPS",
                           "Default/DIPS-journal", "Default/DIPS-wal", "Default/Session Storage"}) {
    RemoveTree(dir + "/" + name);
  }
}

// A Chromium that could not start, or was killed, leaves its locks; another may have come
// meanwhile.
void RemoveOurLocks(const std::string& dir) {
  bool busy = false;
  const int fd = ConnectToChromium(dir, &busy);
  if (fd >= 0) close(fd);
  if (!busy) RemoveStaleLocks(dir);
}

// Whether a Chromium runs on the folder and is going to stay. One whose owner was killed a moment
// ago is about to end, upon which it drops the connection.
bool RunsOn(const std::string& dir) {
  bool busy = false;
  const int fd = ConnectToChromium(dir, &busy);
  if (fd < 0) return busy;
  const bool dropped = WaitReadable(fd, kLastMoments);
  close(fd);
  if (!dropped) return true;
  const int again = ConnectToChromium(dir, &busy);
  if (again >= 0) close(again);
  return busy;
}

std::string Absolute(const std::string& path) {
  std::error_code error;
  fs::path result = fs::absolute(path, error).lexically_normal();
  if (!result.has_filename()) result = result.parent_path();
  return result;
}

}  // namespace

FolderFault FaultOf(const std::string& folder) {
  struct stat link, info;
  if (lstat(folder.c_str(), &link) != 0 || stat(folder.c_str(), &info) != 0 ||
      !S_ISDIR(info.st_mode)) {
    return FolderFault::kNoFolder;
  }
  if (link.st_uid != geteuid() || info.st_uid != geteuid()) return FolderFault::kOtherOwner;
  if ((info.st_mode & kOthersMayWrite) != 0) return FolderFault::kOthersMayWrite;
  const bool writable = access(folder.c_str(), R_OK | W_OK | X_OK) == 0;
  return writable ? FolderFault::kNone : FolderFault::kNotWritable;
}

std::unique_ptr<Profile> Profile::Open(const std::string& cache_path, std::string* err) {
  if (cache_path.empty()) return OpenPrivate({}, err);
  const std::string dir = Absolute(cache_path);
  SweepPrivateFolders(dir);
  const bool usable = MakeFolders(dir) && FaultOf(dir) == FolderFault::kNone && HasRoom(dir);
  if (!usable) return OpenPrivate(dir, err);
  bool busy = false;
  const int lock = LockFolder(dir, &busy);
  if (lock < 0) return OpenPrivate(dir, err);
  std::unique_ptr<Profile> profile(new Profile(dir, false, lock));
  // The lock is among ourselves; any other Chromium shows by its socket.
  if (RunsOn(dir)) return OpenPrivate(dir, err);
  RemoveStaleLocks(dir);
  RemoveNotes(dir);
  std::string ignored;
  if (!SeedPreferences(dir, &ignored)) return OpenPrivate(dir, err);
  KeepNoSessions(dir);
  return profile;
}

std::unique_ptr<Profile> Profile::OpenPrivate(const std::string& cache_path, std::string* err) {
  const std::string temporary = TemporaryFolder() + "/cef-profile";
  SweepPrivateFolders(temporary);
  int lock = -1;
  std::string dir;
  if (!cache_path.empty()) {
    const std::string beside = Absolute(cache_path);
    const std::string parent = fs::path(beside).parent_path();
    if (!OthersMayWrite(beside) && MakeFolders(parent) && !OthersMayWrite(parent) &&
        HasRoom(parent)) {
      dir = MakePrivateFolder(beside, &lock);
    }
  }
  if (dir.empty()) dir = MakePrivateFolder(temporary, &lock);
  if (dir.empty()) {
    *err = "cannot make a profile folder in " + TemporaryFolder() + ": " + strerror(errno);
    return nullptr;
  }
  std::unique_ptr<Profile> profile(new Profile(dir, true, lock));
  if (!SeedPreferences(dir, err)) return nullptr;
  KeepNoSessions(dir);
  return profile;
}

Profile::~Profile() {
  if (private_) {
    RemoveTree(dir_);
  } else {
    RemoveOurLocks(dir_);
  }
  if (lock_fd_ >= 0) close(lock_fd_);
}

}  // namespace engine
