#include "cef/chromium/process/AppWindow.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/base/MessageLoop.h"

namespace engine {

namespace {

constexpr auto kMessageLimit = std::chrono::seconds(2);

std::vector<std::string> Arguments(const std::string& profile_dir, const std::string& title) {
  std::vector<std::string> arguments = {"--user-data-dir=" + profile_dir};
  // The warning bar about --no-sandbox is kept away from a window only by its own command line.
  arguments.push_back("--test-type");
  arguments.push_back("--app=" + AppWindowUrl(title));
  return arguments;
}

bool WaitWritable(int fd, Clock::time_point end) {
  pollfd watched = {fd, POLLOUT, 0};
  return PollUntil(end, &watched, 1);
}

bool SendAll(int fd, const std::string& message, Clock::time_point end) {
  size_t done = 0;
  while (done < message.size()) {
    const ssize_t count = send(fd, message.data() + done, message.size() - done, MSG_NOSIGNAL);
    if (count > 0) {
      done += static_cast<size_t>(count);
    } else if (count < 0 && errno == EINTR) {
      continue;
    } else if (count < 0 && errno != EAGAIN) {
      return false;
    } else if (!WaitWritable(fd, end)) {
      errno = ETIMEDOUT;
      return false;
    }
  }
  return true;
}

// Reads to the end of the stream, as many bytes as the longest answer has, or until a signal comes.
std::string ReadAnswer(int fd, Clock::time_point end) {
  constexpr size_t kLongest = sizeof("SHUTDOWN") - 1;
  std::string answer;
  while (answer.size() < kLongest && answer != "ACK" && MessageLoop::Get().AwaitReadable(fd, end)) {
    char buffer[kLongest];
    const ssize_t count = recv(fd, buffer, kLongest - answer.size(), 0);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) break;
    answer.append(buffer, static_cast<size_t>(count));
  }
  return answer;
}

}  // namespace

std::string AppWindowUrl(const std::string& title) {
  std::string html = "<title>";
  for (char c : title) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      default:
        html += c;
    }
  }
  html += "</title>";
  std::string url = "data:text/html;charset=utf-8,";
  for (unsigned char c : html) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       c == '-' || c == '.' || c == '_';
    if (plain) {
      url += static_cast<char>(c);
    } else {
      char escaped[4];
      snprintf(escaped, sizeof escaped, "%%%02X", c);
      url += escaped;
    }
  }
  return url;
}

int ConnectToChromium(const std::string& profile_dir, bool* busy) {
  if (busy) *busy = false;
  // By way of the folder's descriptor: a socket's address has room for 107 bytes only.
  const int folder = open(profile_dir.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return -1;
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/SingletonSocket", folder);
  int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  int error = errno;
  if (fd >= 0 && connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    error = errno;
    close(fd);
    fd = -1;
  }
  close(folder);
  // EAGAIN: there is a listener, but its queue is full.
  if (busy) *busy = fd >= 0 || error == EAGAIN;
  errno = error;
  return fd;
}

bool OpenAppWindow(const std::string& profile_dir, const std::string& title, std::string* err) {
  const auto end = Clock::now() + kMessageLimit;
  const int fd = ConnectToChromium(profile_dir, nullptr);
  if (fd < 0) {
    *err = std::string("cannot reach Chromium: ") + strerror(errno);
    return false;
  }
  // "START", the current folder and the command line, separated by NULs.
  std::string message = "START";
  for (const char* text : {"/", "chromium"}) message.append(1, '\0').append(text);
  for (const std::string& argument : Arguments(profile_dir, title)) {
    message.append(1, '\0').append(argument);
  }
  const bool sent = SendAll(fd, message, end) && shutdown(fd, SHUT_WR) == 0;
  if (!sent) *err = std::string("cannot send to Chromium: ") + strerror(errno);
  const std::string answer = sent ? ReadAnswer(fd, end) : std::string();
  close(fd);
  if (sent && answer != "ACK") *err = "Chromium's answer was \"" + answer + "\"";
  return answer == "ACK";
}

}  // namespace engine
