// The log that the client's processes share: machine-wide, or else the user's own.

#include <fcntl.h>
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

constexpr int kLockProject = 1;
constexpr mode_t kLogFileMode = 0666;
// Writers hold the lock for one line at a time.
constexpr timespec kLockPatience = {1, 0};

struct LogPlace {
  bool global = true;
  std::string folder;
  std::string problem;  // why there is no log; empty when there is
};

// The choice that every writer makes.
LogPlace FindPlace() {
  LogPlace place;
  place.folder = InstallPaths::kLogFolder;
  if (WhyNoFolder(place.folder).empty()) return place;
  GetLogSessionShareLockName();
  place.global = false;
  place.folder = s_LogSessionShareLockName;
  place.problem = WhyNoFolder(place.folder);
  return place;
}

}  // namespace

Finding CheckLogFolder() {
  const LogPlace place = FindPlace();
  if (!place.problem.empty()) return Warning("log-folder", place.problem);
  return Ok("log-folder", place.folder);
}

Finding CheckLogFile() {
  const std::string file = GetPrivShareLogName(FindPlace().global);
  struct stat info;
  if (lstat(file.c_str(), &info) != 0) {
    const std::string folder = file.substr(0, file.rfind('/'));
    if (stat(folder.c_str(), &info) == 0 && access(folder.c_str(), W_OK | X_OK) != 0) {
      return Warning("log-file", "no file can be made in " + folder + ": " + strerror(errno));
    }
    return Ok("log-file", file + " will be made");
  }
  if (S_ISLNK(info.st_mode)) return Warning("log-file", file + " is a symbolic link");
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
  return Ok("log-file", file);
}

Finding CheckLogLock() {
  const key_t key = ftok(FindPlace().folder.c_str(), kLockProject);
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
  return Failure("log-lock", name + " is held, last by " + ProcessText(holder) +
                                 (IsAlive(holder) ? "" : ", which is not there any more"));
}

Finding CheckLogControlBlock() {
  const std::string name = ControlBlockName(FindPlace().global);
  const std::string file = "/dev/shm" + name;
  struct stat info;
  if (stat(file.c_str(), &info) != 0) return Ok("log-control-block", "none yet");
  // With O_CREAT as every writer has it: some systems then refuse the files of others.
  const int fd = shm_open(name.c_str(), O_RDWR | O_CREAT, 0666);
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
