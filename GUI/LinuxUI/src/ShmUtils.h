// The return channel: one System V shared-memory segment that both sides find by a folder and a
// letter.

#ifndef GUI_LINUXUI_SRC_SHMUTILS_H_
#define GUI_LINUXUI_SRC_SHMUTILS_H_

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

// Writes one text into the segment. The segment is never removed here, since the reader comes after
// this process has ended; it has no lock and no ready flag. Failures are logged at level 1.
class ShmUtils {
 public:
  static constexpr size_t kSegmentSize = 4096;
  static constexpr int kSegmentMode = 0644;  // of a segment that is created here

  // Finds the segment of `path`, which must exist, and `projectId`, or creates it, readable for
  // everyone; an existing one keeps its mode. False when the path is missing, and when the segment
  // is refused or smaller than kSegmentSize. Call it once, before setVal.
  bool attach(const std::string& path, char projectId);

  // Copies `value` to the start of the segment: no terminator, and the rest stays as it was, so the
  // reader clears or removes an older segment first. A NUL in `value` cuts it; its length is then
  // filled with NULs. The copy is not bounded: `value` must not exceed kSegmentSize bytes. False
  // when the segment cannot be mapped (nothing is written) or unmapped (the value is written).
  bool setVal(const std::string& value);

  key_t m_key = -1;           // by ftok
  std::int32_t m_shmId = -1;  // by shmget
  std::string m_path;
};

#endif  // GUI_LINUXUI_SRC_SHMUTILS_H_
