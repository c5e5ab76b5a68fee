#include "tools/starter/Turn.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "tools/starter/ReturnSegment.h"

namespace ebStarter {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPauseMs = 100;

}  // namespace

Turn::Turn(const std::string& folder) {
  MakeDataFolder(folder);
  folder_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

Turn::~Turn() {
  if (folder_ != -1) close(folder_);
}

bool Turn::Take(std::chrono::milliseconds limit, int stop) const {
  const Clock::time_point end = Clock::now() + limit;
  while (flock(folder_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    pollfd watched = {stop, POLLIN, 0};
    const int pause = Clock::now() < end ? kPauseMs : 0;
    if (poll(&watched, 1, pause) > 0) return true;
    if (pause == 0) return false;
  }
  return true;
}

}  // namespace ebStarter
