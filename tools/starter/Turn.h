// One step at a time in one HOME: two would share the segment for the result, and the second would
// take the first one's away.

#ifndef TOOLS_STARTER_TURN_H_
#define TOOLS_STARTER_TURN_H_

#include <chrono>
#include <string>

namespace ebStarter {

// The right to run a step in a data folder: a lock on the folder, which goes with the process
// that holds it. Where folders cannot be locked, as on some network file systems, everybody has it.
class Turn {
 public:
  // Makes the folder if it is not there.
  explicit Turn(const std::string& folder);
  ~Turn();
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  // Waits up to `limit` for whoever has it; false when it is not to be had by then. True at once
  // when the descriptor `stop` is readable (-1: none), for then no step will be run.
  bool Take(std::chrono::milliseconds limit, int stop) const;

 private:
  int folder_;
};

}  // namespace ebStarter

#endif  // TOOLS_STARTER_TURN_H_
