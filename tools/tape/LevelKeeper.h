// Keeps the log at its finest level while it lives.

#ifndef TOOLS_TAPE_LEVELKEEPER_H_
#define TOOLS_TAPE_LEVELKEEPER_H_

#include <sys/types.h>

#include <string>

namespace tape {

// The level is raised, and put back, by a small process that waits for the end of this one: so it
// is put back whatever ends this one, and whoever takes the control block's memory away ends
// nothing else. To be made while the process has one thread.
class LevelKeeper {
 public:
  // Throws std::runtime_error saying why the level cannot be raised. Takes three seconds at most.
  explicit LevelKeeper(int level);
  ~LevelKeeper() { Release(); }
  LevelKeeper(const LevelKeeper&) = delete;
  LevelKeeper& operator=(const LevelKeeper&) = delete;

  // Puts the level back, unless somebody else has set another one. Returns an empty text, or what
  // has gone wrong. Takes three seconds at most.
  std::string Release();

 private:
  pid_t process_ = -1;
  int hold_ = -1;    // its end tells the process to end
  int report_ = -1;  // what the process says
};

}  // namespace tape

#endif  // TOOLS_TAPE_LEVELKEEPER_H_
