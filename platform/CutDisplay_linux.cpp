#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "platform/DisplayLoss.h"

namespace {

// No library tells which descriptors are its connections while it still waits for the server.
bool LeadsToX(int fd) {
  union {
    sockaddr any;
    sockaddr_un local;
    sockaddr_storage room;
  } peer = {};
  socklen_t size = sizeof peer;
  if (getpeername(fd, &peer.any, &size) != 0) return false;
  // Forwarded displays are the only network connections of this process.
  if (peer.any.sa_family == AF_INET || peer.any.sa_family == AF_INET6) return true;
  const std::string_view path(peer.local.sun_path, sizeof peer.local.sun_path);
  return peer.any.sa_family == AF_UNIX && path.find("/.X11-unix/X") != path.npos;
}

}  // namespace

void CutDisplay() {
  std::error_code unreadable;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", unreadable)) {
    const int fd = std::atoi(entry.path().filename().c_str());
    if (LeadsToX(fd)) shutdown(fd, SHUT_RDWR);
  }
}
