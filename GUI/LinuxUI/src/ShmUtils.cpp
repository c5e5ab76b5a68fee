#include "GUI/LinuxUI/src/ShmUtils.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cerrno>
#include <cstring>

#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

bool ShmUtils::attach(const std::string& path, char projectId) {
  m_path = path;
  m_key = ftok(m_path.c_str(), static_cast<signed char>(projectId));
  if (m_key == -1) {
    KXLOG(1, kStrModuleName, "ftok failed. error[%d] [%s]", errno, strerror(errno));
    return false;
  }
  m_shmId = shmget(m_key, kSegmentSize, IPC_CREAT | kSegmentMode);
  if (m_shmId == -1) {
    KXLOG(1, kStrModuleName, "shmget failed. error[%d] [%s]", errno, strerror(errno));
    return false;
  }
  return true;
}

bool ShmUtils::setVal(const std::string& value) {
  void* const segment = shmat(m_shmId, nullptr, 0);
  if (segment == reinterpret_cast<void*>(-1)) {
    KXLOG(1, kStrModuleName, "shmat failed. error[%d] [%s]", errno, strerror(errno));
    return false;
  }
  strncpy(static_cast<char*>(segment), value.data(), value.size());
  if (shmdt(segment) == -1) {
    KXLOG(1, kStrModuleName, "shmdt failed. error[%d] [%s]", errno, strerror(errno));
    return false;
  }
  return true;
}
