#include "tools/starter/SignalPipe.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace {

constexpr int kCaught[] = {SIGCHLD, SIGHUP, SIGINT, SIGTERM};

int g_read_end = -1;
int g_write_end = -1;

void Note(int signal_number) {
  const int saved = errno;
  const char byte = static_cast<char>(signal_number);
  // A full pipe holds enough to wake the reader.
  if (write(g_write_end, &byte, 1) < 0) errno = saved;
  errno = saved;
}

}  // namespace

SignalPipe::SignalPipe() {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe for signals");
  for (const int end : ends) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(end, F_SETFL, O_NONBLOCK);
  }
  g_read_end = ends[0];
  g_write_end = ends[1];
  struct sigaction action = {};
  action.sa_handler = Note;
  action.sa_flags = SA_RESTART;
  for (size_t i = 0; i < std::size(kCaught); ++i) {
    sigaction(kCaught[i], nullptr, &former_[i]);
    const bool ignored = kCaught[i] != SIGCHLD && former_[i].sa_handler == SIG_IGN;
    if (!ignored) sigaction(kCaught[i], &action, nullptr);
  }
}

SignalPipe::~SignalPipe() {
  for (size_t i = 0; i < std::size(kCaught); ++i) sigaction(kCaught[i], &former_[i], nullptr);
  close(g_read_end);
  close(g_write_end);
  g_read_end = g_write_end = -1;
}

int SignalPipe::Wait(std::chrono::milliseconds limit) const {
  pollfd watched = {g_read_end, POLLIN, 0};
  const auto wait = std::clamp<long long>(limit.count(), 0, 60 * 60 * 1000);
  if (poll(&watched, 1, static_cast<int>(wait)) <= 0) return 0;
  char byte = 0;
  return read(g_read_end, &byte, 1) == 1 ? byte : 0;
}
