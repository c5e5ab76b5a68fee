// What goes through the kernel: the segment of the result, and the limits of such things.
//
// Limits are asked of the kernel in its own way: Linux only.

#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "GUI/LinuxUI/src/ShmUtils.h"
#include "GUI/cefBrowser/ReturnChannel.h"
#include "cef/chromium/process/ChromiumSwitches.h"
#include "libs/kxaccess/RunPaths.h"
#include "tools/doctor/Checks.h"
#include "tools/doctor/Looks.h"

namespace doctor {

namespace {

// Nine tenths.
bool NearlyUsed(unsigned long used, unsigned long limit) { return used >= limit - limit / 10; }

std::string Used(unsigned long used, unsigned long limit, const char* what) {
  return std::to_string(used) + " of " + std::to_string(limit) + " " + what;
}

}  // namespace

Finding CheckReturnSegment() {
  const key_t key = ftok(RunPaths::FromEnvironment().channel.c_str(), kReturnProjectId);
  const int id = key == -1 ? -1 : shmget(key, 0, 0);
  if (id == -1) return Ok("return-segment", "none yet");
  const std::string name = "segment " + std::to_string(id);
  shmid_ds info = {};
  const bool readable = shmctl(id, IPC_STAT, &info) == 0;
  const bool ours = readable && info.shm_perm.uid == geteuid();
  const std::string owner =
      readable ? "belongs to the user " + UserName(info.shm_perm.uid) : "is another user's";
  if (shmget(key, ShmUtils::kSegmentSize, ShmUtils::kSegmentMode) == -1) {
    if (!ours && geteuid() != 0) return Failure("return-segment", name + " " + owner);
    return Warning("return-segment-size", name + " is smaller than " +
                                              std::to_string(ShmUtils::kSegmentSize) +
                                              " bytes: " + std::to_string(info.shm_segsz));
  }
  if (!ours) return Warning("return-segment", name + " " + owner);
  return Ok("return-segment", name + " exists, from an earlier run or one still running");
}

Finding CheckSharedMemoryLimit() {
  shm_info used = {};
  shminfo limit = {};
  shmctl(0, SHM_INFO, reinterpret_cast<shmid_ds*>(&used));
  shmctl(0, IPC_INFO, reinterpret_cast<shmid_ds*>(&limit));
  const auto count = static_cast<unsigned long>(used.used_ids);
  const std::string found = Used(count, limit.shmmni, "segments");
  const int trial = shmget(IPC_PRIVATE, ShmUtils::kSegmentSize, 0600);
  if (trial == -1) {
    return Failure("shared-memory-limit", found + ", no further one: " + strerror(errno));
  }
  shmctl(trial, IPC_RMID, nullptr);
  if (NearlyUsed(count, limit.shmmni)) return Warning("shared-memory-limit", found);
  if (NearlyUsed(used.shm_tot, limit.shmall)) {
    return Warning("shared-memory-limit", Used(used.shm_tot, limit.shmall, "pages"));
  }
  return Ok("shared-memory-limit", found);
}

Finding CheckSemaphoreLimit() {
  seminfo used = {};
  semctl(0, 0, SEM_INFO, &used);
  const auto count = static_cast<unsigned long>(used.semusz);
  const auto limit = static_cast<unsigned long>(used.semmni);
  const std::string found = Used(count, limit, "semaphore sets");
  return NearlyUsed(count, limit) ? Warning("semaphore-limit", found)
                                  : Ok("semaphore-limit", found);
}

Finding CheckSharedMemoryFolder() {
  if (engine::SharedMemoryIsSmall()) {
    return Warning("shared-memory-folder", "/dev/shm is missing or has little room");
  }
  return Ok("shared-memory-folder", "/dev/shm");
}

}  // namespace doctor
