// The log control block: what all processes that write one log share, in POSIX shared memory.
//
// The layout is an interface. The VPN client's log service maps the same object to change the level
// while processes run, so every field keeps its place. All fields change only under the log lock.
//
// Every user of the machine can write to it, so nothing in it is to be trusted.

#ifndef LIBS_KXLOG_KXLOGSERVICE_LOGCONTROLBLOCK_H_
#define LIBS_KXLOG_KXLOGSERVICE_LOGCONTROLBLOCK_H_

#include <cstddef>
#include <cstdint>

struct LogControlBlock {
  uint32_t size;            // of the block; 0: not initialised yet
  uint32_t magic;           // kLogControlMagic
  uint32_t service_word;    // kLogServiceWord; its meaning is the log service's
  uint32_t rotation_state;  // a LogRotationState
  uint32_t generation;      // counts rotations, so that processes notice those of others
  uint32_t file_size;       // bytes in the log file, as its writers count them
  uint32_t previous_size;   // file_size at the last rotation
  uint32_t maximum_size;    // the file is rotated when it has at least as many bytes
  int32_t trace_level;      // records up to this level are written
  uint32_t level_updates;   // the log service counts it up when it changes trace_level
  uint8_t reserved_head[1028];
  char path[1024];  // absolute; ends with a NUL, if its writer meant well
  uint8_t reserved_tail[1028];
};

enum LogRotationState : uint32_t {
  kLogNeverRotated = 0,
  kLogRotated = 1,  // or the attempt failed
  kLogRotating = 2,
};

inline constexpr uint32_t kLogControlMagic = 0xD5106A91;
inline constexpr uint32_t kLogServiceWord = 5;
inline constexpr uint32_t kLogMaximumSize = 25 * 1024 * 1024;

static_assert(sizeof(LogControlBlock) == 3120);
static_assert(offsetof(LogControlBlock, rotation_state) == 12);
static_assert(offsetof(LogControlBlock, maximum_size) == 28);
static_assert(offsetof(LogControlBlock, level_updates) == 36);
static_assert(offsetof(LogControlBlock, path) == 1068);
static_assert(offsetof(LogControlBlock, reserved_tail) == 2092);

#endif  // LIBS_KXLOG_KXLOGSERVICE_LOGCONTROLBLOCK_H_
