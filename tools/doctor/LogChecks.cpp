// The log that the client's processes share: machine-wide, or else the user's own.

#include <fcntl.h>
#include <pwd.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <string>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Looks.h"

namespace doctor {

namespace {

// Writers hold the lock for one line at a time.
constexpr timespec kLockPatience = {1, 0};

struct LogPlace {
  bool global = true;
  std::string folder;
  std::string no_machine_log;  // why it is not the machine-wide one; empty when it is
  std::string problem;         // why there is none at all; empty when there is
};

bool HasUserEntry() { return getpwuid(getuid()) != nullptr; }

// The choice that every writer makes.
LogPlace FindPlace() {
  LogPlace place;
  place.folder = InstallPaths::kLogFolder;
  place.no_machine_log = WhyNoFolder(place.folder);
  if (place.no_machine_log.empty()) return place;
  GetLogSessionShareLockName();
  place.global = false;
  place.folder = s_LogSessionShareLockName;
  place.problem = HasUserEntry() ? WhyNoFolder(place.folder) : "your user id has no home folder";
  return place;
}

// The size at which the log file is full, as its writers are told.
off_t FullSize(bool global) {
  LogControlBlock block = {};
  const int fd = shm_open(ControlBlockName(global).c_str(), O_RDONLY, 0);
  const bool known = fd >= 0 && pread(fd, &block, sizeof block, 0) == sizeof block && block.size;
  if (fd >= 0) close(fd);
  return known ? block.maximum_size : kLogMaximumSize;
}

}  // namespace

Finding CheckUserEntry() {
  if (HasUserEntry()) return Ok("user-entry", UserName(getuid()));
  return Warning("user-entry", "the user id " + std::to_string(getuid()) + " has no entry");
}

Finding CheckLogFolder() {
  const LogPlace place = FindPlace();
  // Where root makes it by signing in, the others could not write to it.
  if (place.global && access(place.folder.c_str(), F_OK) != 0 && errno == ENOENT) {
    return Warning("log-folder", place.folder + " does not exist");
  }
  if (place.global) return Ok("log-folder", place.folder);
  return Warning("log-folder",
                 place.no_machine_log + (place.problem.empty() ? "" : "; ") + place.problem);
}

Finding CheckLogFile() {
  const LogPlace place = FindPlace();
  const std::string file = GetPrivShareLogName(place.global);
  if (!place.global) return Warning("log-file", "nothing is ever written to " + file);
  const std::string folder = file.substr(0, file.rfind('/'));
  struct stat info;
  if (lstat(file.c_str(), &info) != 0) {
    if (stat(folder.c_str(), &info) == 0 && access(folder.c_str(), W_OK | X_OK) != 0) {
      return Warning("log-file", "no file can be created in " + folder + ": " + strerror(errno));
    }
    return Ok("log-file", file + " will be created");
  }
  if (S_ISLNK(info.st_mode) || (S_ISREG(info.st_mode) && info.st_nlink > 1)) {
    const std::string what = S_ISLNK(info.st_mode) ? " is a symbolic link" : " has other names too";
    return Warning("log-file", file + what);
  }
  if (!S_ISREG(info.st_mode)) return Warning("log-file", file + " is not a file");
  // Whoever may not set the mode that all writers rely on does not write.
  const bool has_mode = (info.st_mode & 07777) == kLogFileMode;
  if (!has_mode && info.st_uid != geteuid() && geteuid() != 0) {
    return Warning("log-file", file + " belongs to the user " + UserName(info.st_uid) +
                                   " and cannot be written by all");
  }
  if (access(file.c_str(), R_OK | W_OK) != 0) {
    return Warning("log-file", file + ": " + strerror(errno));
  }
  if (info.st_size >= FullSize(place.global) && access(folder.c_str(), W_OK | X_OK) != 0) {
    return Warning("log-file",
                   file + " is full and cannot be renamed: " + folder + ": " + strerror(errno));
  }
  return Ok("log-file", file);
}

Finding CheckLogLock() {
  const key_t key = ftok(FindPlace().folder.c_str(), kLogLockProject);
  const int id = key == -1 ? -1 : semget(key, 0, 0);
  if (id == -1) return Ok("log-lock", "none yet");
  const std::string name = "semaphore " + std::to_string(id);
  sembuf take = {0, -1, SEM_UNDO};
  if (semtimedop(id, &take, 1, &kLockPatience) == 0) {
    sembuf give = {0, 1, SEM_UNDO};
    semop(id, &give, 1);
    return Ok("log-lock", name);
  }
  if (errno != EAGAIN) return Warning("log-lock", name + ": " + strerror(errno));
  const pid_t holder = semctl(id, 0, GETPID);
  return Warning("log-lock", name + " is held, last by " + ProcessText(holder) +
                                 (IsAlive(holder) ? "" : ", which is not there any more"));
}

Finding CheckLogControlBlock() {
  const std::string name = ControlBlockName(FindPlace().global);
  const std::string file = "/dev/shm" + name;
  struct stat info;
  if (stat(file.c_str(), &info) != 0) return Ok("log-control-block", "none yet");
  const int fd = shm_open(name.c_str(), O_RDWR, 0);
  if (fd < 0) {
    char mode[8];
    snprintf(mode, sizeof mode, "%03o", info.st_mode & 0777u);
    return Warning("log-control-block", file + ", made by the user " + UserName(info.st_uid) +
                                            " with the mode " + mode + ": " + strerror(errno));
  }
  LogControlBlock block = {};
  const ssize_t count = pread(fd, &block, sizeof block, 0);
  close(fd);
  // An empty one is being made right now.
  if (count > 0 && block.size != 0 &&
      (block.size != sizeof block || block.magic != kLogControlMagic)) {
    return Warning("log-control-block", file + " holds something else");
  }
  return Ok("log-control-block", file);
}

}  // namespace doctor
