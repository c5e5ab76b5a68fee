#include "cef/chromium/process/AppWindow.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/process/Product.h"

namespace engine {

namespace {

constexpr auto kMessageLimit = std::chrono::seconds(2);

// The mark comes once it is clear that this takes longer; until then nothing is drawn anew.
constexpr char kFirstPage[] = R"(<!doctype html><meta charset=utf-8><title>{TITLE}</title><style>
:root{color-scheme:light dark}
body{margin:0;height:100vh;display:flex;flex-direction:column;align-items:center;
justify-content:center;font:15px system-ui,sans-serif;background:#f4f8fc;color:#1f3244}
h1{font-size:21px;font-weight:500;margin:0 0 8px}p{margin:0;opacity:.75}
i{box-sizing:border-box;width:28px;height:28px;margin-top:28px;border:3px solid #8886;
border-top-color:#2f7cc0;border-radius:50%;opacity:0;
animation:turn 1s linear .5s infinite,show .3s .5s forwards}
@keyframes turn{to{transform:rotate(1turn)}}@keyframes show{to{opacity:1}}
@media(prefers-color-scheme:dark){body{background:#1b2229;color:#dce6ef}}
</style><h1>{PRODUCT}</h1><p>{HOST}</p><i></i>)";

std::string EscapeHtml(const std::string& text) {
  std::string html;
  for (char c : text) {
    if (c == '&') {
      html += "&amp;";
    } else if (c == '<') {
      html += "&lt;";
    } else {
      html += c;
    }
  }
  return html;
}

std::string EscapeUrl(const std::string& text) {
  std::string url;
  for (unsigned char c : text) {
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

std::vector<std::string> Arguments(const std::string& profile_dir, const std::string& host) {
  std::vector<std::string> arguments = {"--user-data-dir=" + profile_dir};
  // The warning bar about --no-sandbox is kept away from a window only by its own command line.
  arguments.push_back("--test-type");
  arguments.push_back("--app=" + AppWindowUrl(host));
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

std::string FirstTitle(const std::string& host) {
  return host.empty() ? kProductName : kProductName + (" \u2013 " + host);
}

std::string AppWindowMark() {
  // Numbers of processes come again, and two containers may share a display.
  static const std::string mark = "run=" + std::to_string(getpid()) + "-" +
                                  std::to_string(Clock::now().time_since_epoch().count());
  return mark;
}

std::string AppWindowName() { return "_text/html;charset=utf-8;" + AppWindowMark() + ",%3C"; }

// The page itself stands in the query: what comes before is the window's name. "<?>" is a comment.
std::string AppWindowUrlStart() {
  return "data:text/html;charset=utf-8;" + AppWindowMark() + ",%3C?%3E";
}

std::string AppWindowUrl(const std::string& host) {
  std::string html = kFirstPage;
  for (const auto& [name, text] : {std::pair<std::string, std::string>{"TITLE", FirstTitle(host)},
                                   {"PRODUCT", kProductName},
                                   {"HOST", host}}) {
    html.replace(html.find("{" + name + "}"), name.size() + 2, EscapeHtml(text));
  }
  return AppWindowUrlStart() + EscapeUrl(html);
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

bool OpenAppWindow(const std::string& profile_dir, const std::string& host, std::string* err) {
  const auto end = Clock::now() + kMessageLimit;
  const int fd = ConnectToChromium(profile_dir, nullptr);
  if (fd < 0) {
    *err = std::string("cannot reach Chromium: ") + strerror(errno);
    return false;
  }
  // "START", the current folder and the command line, separated by NULs.
  std::string message = "START";
  for (const char* text : {"/", "chromium"}) message.append(1, '\0').append(text);
  for (const std::string& argument : Arguments(profile_dir, host)) {
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
