#include <unistd.h>

#include <cerrno>

#include "tools/starter/Pipe.h"
#include "tools/starter/ebStarter.h"

namespace ebStarter {

StopSwitch::StopSwitch() {
  MakePipe(ends_);
  for (const int end : ends_) NeverWait(end);
}

StopSwitch::~StopSwitch() {
  for (const int end : ends_) close(end);
}

void StopSwitch::Stop(int signal_number) noexcept {
  const int saved = errno;
  const unsigned char byte = static_cast<unsigned char>(signal_number);
  // A full pipe holds enough to end the step.
  if (write(ends_[1], &byte, 1) < 0) errno = saved;
  errno = saved;
}

}  // namespace ebStarter
