// The segment that a run leaves its result in, as a caller finds it.

#ifndef TESTS_SUPPORT_SEGMENT_H_
#define TESTS_SUPPORT_SEGMENT_H_

#include <sys/ipc.h>
#include <sys/shm.h>

#include <string>

// -1 when there is none.
inline int SegmentId(const std::string& data_folder) {
  const key_t key = ftok(data_folder.c_str(), 'R');
  return key == -1 ? -1 : shmget(key, 0, 0);
}

// All of it up to its last byte that is not NUL; the segment is removed. Empty when there is none.
inline std::string TakeSegment(const std::string& data_folder) {
  const int id = SegmentId(data_folder);
  shmid_ds status = {};
  if (id == -1 || shmctl(id, IPC_STAT, &status) != 0) return "";
  const void* const memory = shmat(id, nullptr, SHM_RDONLY);
  std::string content;
  if (memory != reinterpret_cast<void*>(-1)) {
    content.assign(static_cast<const char*>(memory), status.shm_segsz);
    content.erase(content.find_last_not_of('\0') + 1);
    shmdt(memory);
  }
  shmctl(id, IPC_RMID, nullptr);
  return content;
}

#endif  // TESTS_SUPPORT_SEGMENT_H_
