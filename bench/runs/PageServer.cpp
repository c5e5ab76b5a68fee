// The web server under the whole-run measurements: one thread, all answers made beforehand, so that
// it is never what is measured. It tells on standard output when what arrived:
//
//   {"port": 40123}                                   once, when it is ready
//   {"run": "r7", "at": "first", "ns": 123456789}     steps of a run, by CLOCK_MONOTONIC
//
// Addresses (RUN is any word, chosen by who measures):
//   /page/RUN/N    a page with N images; "first" when it is asked for, "last" when all its images
//                  have been asked for and answered
//   /post/RUN/N    a page that posts N bytes; "first", and "last" when they have been answered
//   /saml/RUN/...  a SAML sign-in that submits itself, with all hosts on this server: "first" for
//                  its beginning, "last" when the page that ends it has been answered
//
// It ends with its standard input.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kPixel(
    "GIF89a\x01\x00\x01\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff!\xf9\x04\x01\x00\x00\x00\x00,"
    "\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02"
    "D\x01\x00;",
    43);
constexpr size_t kLongestHead = 64 * 1024;
constexpr int kMostImages = 100000;

struct Connection {
  std::string received;  // what has come of a request's head
  std::string unsent;
  bool waits_to_send = false;
  size_t body_left = 0;
  std::string answer;  // to the request whose body is coming
  std::string run;     // whose "last" that answer is
};

struct Answer {
  std::string text;
  std::string run;  // not empty: "last" when it has been sent
};

std::string Http(const std::string& status, const std::string& headers, std::string_view body) {
  std::string text = "HTTP/1.1 " + status + "\r\nCache-Control: no-store\r\n" + headers +
                     "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
  return text.append(body);
}

std::string Html(const std::string& body, const std::string& headers = "") {
  return Http("200 OK", "Content-Type: text/html\r\n" + headers,
              "<!doctype html><title>Bench</title>" + body);
}

void Tell(const std::string& run, const char* step) {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  printf("{\"run\": \"%s\", \"at\": \"%s\", \"ns\": %lld}\n", run.c_str(), step,
         now.tv_sec * 1000000000LL + now.tv_nsec);
  fflush(stdout);
}

// The pieces of "/a/b/c".
std::vector<std::string> Pieces(std::string_view path) {
  std::vector<std::string> pieces;
  while (!path.empty()) {
    path.remove_prefix(1);
    const size_t end = std::min(path.find('/'), path.size());
    pieces.emplace_back(path.substr(0, end));
    path.remove_prefix(end);
  }
  return pieces;
}

bool IsWord(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](unsigned char c) { return isalnum(c) || c == '-'; });
}

class PageServer {
 public:
  bool Listen() {
    epoll_ = epoll_create1(EPOLL_CLOEXEC);
    sockaddr_in four = {};
    four.sin_family = AF_INET;
    four.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (!ListenAt(AF_INET, reinterpret_cast<sockaddr*>(&four), sizeof four)) return false;
    socklen_t size = sizeof four;
    getsockname(listeners_.front(), reinterpret_cast<sockaddr*>(&four), &size);
    port_ = ntohs(four.sin_port);
    // Names below localhost mean both; where there is no IPv6 nobody will ask.
    sockaddr_in6 six = {};
    six.sin6_family = AF_INET6;
    six.sin6_addr = in6addr_loopback;
    six.sin6_port = four.sin_port;
    ListenAt(AF_INET6, reinterpret_cast<sockaddr*>(&six), sizeof six);
    Watch(STDIN_FILENO, EPOLLIN, EPOLL_CTL_ADD);
    return true;
  }

  int port() const { return port_; }

  void Run() {
    epoll_event ready[64];
    for (;;) {
      const int count = epoll_wait(epoll_, ready, 64, -1);
      for (int i = 0; i < count; ++i) {
        const int fd = ready[i].data.fd;
        if (fd == STDIN_FILENO) return;
        if (std::find(listeners_.begin(), listeners_.end(), fd) != listeners_.end()) {
          Accept(fd);
        } else if (!Serve(fd, ready[i].events)) {
          close(fd);
          connections_.erase(fd);
        }
      }
    }
  }

 private:
  bool ListenAt(int family, const sockaddr* address, socklen_t size) {
    const int fd = socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    if (bind(fd, address, size) != 0 || listen(fd, 128) != 0) {
      close(fd);
      return false;
    }
    listeners_.push_back(fd);
    Watch(fd, EPOLLIN, EPOLL_CTL_ADD);
    return true;
  }

  void Watch(int fd, uint32_t events, int operation) {
    epoll_event event = {};
    event.events = events;
    event.data.fd = fd;
    epoll_ctl(epoll_, operation, fd, &event);
  }

  void Accept(int listener) {
    const int fd = accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (fd < 0) return;
    const int on = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    connections_[fd] = {};
    Watch(fd, EPOLLIN, EPOLL_CTL_ADD);
  }

  // False when the connection has ended.
  bool Serve(int fd, uint32_t events) {
    Connection& connection = connections_[fd];
    if (events & EPOLLOUT) return Flush(fd, &connection);
    static char piece[1 << 20];
    const ssize_t count = read(fd, piece, sizeof piece);
    if (count <= 0) return count < 0 && errno == EAGAIN;
    std::string_view data(piece, static_cast<size_t>(count));
    while (!data.empty()) {
      if (connection.body_left > 0) {
        const size_t taken = std::min(connection.body_left, data.size());
        connection.body_left -= taken;
        data.remove_prefix(taken);
      } else if (!TakeHead(&connection, &data)) {
        return connection.received.size() <= kLongestHead;
      }
      if (connection.body_left > 0) continue;
      connection.unsent += connection.answer;
      if (!Flush(fd, &connection)) return false;
      if (!connection.run.empty()) Tell(connection.run, "last");
      connection.run.clear();
    }
    return true;
  }

  // Once the head of a request is whole: its answer, and how much of a body follows.
  bool TakeHead(Connection* connection, std::string_view* data) {
    std::string& head = connection->received;
    const size_t former = head.size();
    head.append(*data);
    const size_t end = head.find("\r\n\r\n", former < 3 ? 0 : former - 3);
    if (end == std::string::npos) return false;
    data->remove_prefix(end + 4 - former);
    head.resize(end + 2);
    const size_t length = head.find("\r\nContent-Length: ");
    connection->body_left =
        length == std::string::npos ? 0 : std::strtoull(head.c_str() + length + 18, nullptr, 10);
    const size_t path = head.find(' ') + 1;
    Answer answer = AnswerTo(head.substr(path, head.find(' ', path) - path));
    connection->answer = std::move(answer.text);
    connection->run = std::move(answer.run);
    head.clear();
    return true;
  }

  bool Flush(int fd, Connection* connection) {
    const ssize_t sent =
        send(fd, connection->unsent.data(), connection->unsent.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno != EAGAIN) return false;
    if (sent > 0) connection->unsent.erase(0, static_cast<size_t>(sent));
    const bool waits = !connection->unsent.empty();
    if (waits != connection->waits_to_send) {
      connection->waits_to_send = waits;
      Watch(fd, waits ? EPOLLIN | EPOLLOUT : EPOLLIN, EPOLL_CTL_MOD);
    }
    return true;
  }

  Answer AnswerTo(const std::string& path) {
    const std::vector<std::string> pieces = Pieces(path);
    static const Answer unknown = {Http("404 Not Found", "", ""), ""};
    if (pieces.size() != 3 || !IsWord(pieces[1])) return unknown;
    const std::string& run = pieces[1];
    if (pieces[0] == "image") return Image(run);
    if (pieces[0] == "page") return Page(run, std::atoi(pieces[2].c_str()));
    if (pieces[0] == "post") return Post(run, pieces[2]);
    if (pieces[0] == "saml") return Saml(run, pieces[2]);
    return unknown;
  }

  Answer Page(const std::string& run, int images) {
    Tell(run, "first");
    std::string body;
    images = std::clamp(images, 0, kMostImages);
    images_left_[run] = images;
    for (int i = 0; i < images; ++i) {
      body += "<img src=/image/" + run + "/" + std::to_string(i) + ".gif>";
    }
    return {Html(body), images == 0 ? run : ""};
  }

  Answer Image(const std::string& run) {
    static const std::string image = Http("200 OK", "Content-Type: image/gif\r\n", kPixel);
    return {image, --images_left_[run] == 0 ? run : ""};
  }

  static Answer Post(const std::string& run, const std::string& size) {
    if (size == "sink") return {Http("204 No Content", "", ""), run};
    Tell(run, "first");
    return {Html("<script>fetch('/post/" + run + "/sink', {method: 'POST', body: 'x'.repeat(" +
                 std::to_string(std::atol(size.c_str())) + ")})</script>"),
            ""};
  }

  Answer Saml(const std::string& run, const std::string& step) const {
    const auto at = [&](const char* host, const char* next) {
      return std::string("http://") + host + ".localhost:" + std::to_string(port_) + "/saml/" +
             run + "/" + next;
    };
    const auto form = [](const std::string& to, const char* field) {
      return "<form method=post action='" + to + "'><input type=hidden name=" + field +
             " value=PHNhbWxwOlJlc3BvbnNlLz4></form><script>document.forms[0].submit()</script>";
    };
    const auto redirect = [](const std::string& to, const std::string& cookies) {
      return Http("302 Found", cookies + "Location: " + to + "\r\n", "");
    };
    if (step == "start") {
      Tell(run, "first");
      return {redirect(at("idp", "sso"), "Set-Cookie: FLOW=" + run + "; Path=/; HttpOnly\r\n"), ""};
    }
    if (step == "sso") {
      return {Html(form(at("idp", "sign-in"), "user"),
                   "Set-Cookie: IDPSESSION=" + run + "; Path=/; HttpOnly\r\n"),
              ""};
    }
    if (step == "sign-in") return {Html(form(at("gateway", "acs"), "SAMLResponse")), ""};
    if (step == "acs") {
      return {redirect(at("gateway", "done"), "Set-Cookie: KXSAMLEBSTATEID=" + run +
                                                  "; Path=/\r\n"
                                                  "Set-Cookie: KXSAMLEBSTATUS=1; Path=/\r\n"),
              ""};
    }
    return {Html("<p>Signed in."), run};
  }

  int epoll_ = -1;
  int port_ = 0;
  std::vector<int> listeners_;
  std::map<int, Connection> connections_;
  std::map<std::string, int> images_left_;
};

}  // namespace

int main() {
  PageServer server;
  if (!server.Listen()) {
    perror("cannot listen");
    return 1;
  }
  printf("{\"port\": %d}\n", server.port());
  fflush(stdout);
  server.Run();
  return 0;
}
