// Asking a Chromium for a window that does not answer as it should.

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/process/AppWindow.h"
#include "cef/chromium/process/ChildProcess.h"
#include "tests/support/TempDir.h"

using engine::OpenAppWindow;

namespace {

// A socket where Chromium would have its own. It accepts one connection and gives the answer, if
// there is one; without any it stays silent until the other side gives up.
class FakeChromium {
 public:
  FakeChromium(const std::string& profile, const std::string& answer)
      : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (profile + "/SingletonSocket").copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(fd_, 1), 0);
    thread_ = std::thread([this, answer] {
      const int peer = accept4(fd_, nullptr, nullptr, SOCK_CLOEXEC);
      char piece[512];
      while (read(peer, piece, sizeof piece) > 0) {
      }
      if (!answer.empty()) send(peer, answer.data(), answer.size(), MSG_NOSIGNAL);
      if (answer.empty()) engine::WaitReadable(fd_, std::chrono::seconds(3));
      close(peer);
    });
  }
  ~FakeChromium() {
    thread_.join();
    close(fd_);
  }

 private:
  int fd_;
  std::thread thread_;
};

}  // namespace

TEST(AppWindowTest, FailsInTimeWhereNobodyAnswers) {
  TempDir folder;
  std::string err;
  EXPECT_FALSE(OpenAppWindow(folder.path(), "x", &err));
  EXPECT_NE(err, "");

  engine::MessageLoop::Get().Init();
  for (const std::string answer : {"ACK", "SHUTDOWN", "AC", "", "signal"}) {
    SCOPED_TRACE(answer);
    const bool signal = answer == "signal";
    if (signal) raise(SIGTERM);
    TempDir profile;
    FakeChromium chromium(profile.path(), signal ? "" : answer);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(OpenAppWindow(profile.path(), "x", &err), answer == "ACK");
    EXPECT_LT(std::chrono::steady_clock::now() - begin,
              std::chrono::milliseconds(signal ? 500 : 2500));
  }
}
