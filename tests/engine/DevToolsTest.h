// The framework without a browser: the test plays the other end of the pipes.

#ifndef TESTS_ENGINE_DEVTOOLSTEST_H_
#define TESTS_ENGINE_DEVTOOLSTEST_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <future>
#include <string>
#include <utility>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

inline constexpr std::chrono::seconds kLimit{10};

class DevToolsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(engine::IoThread::Get().Start());
    ASSERT_EQ(pipe(commands_), 0);
    ASSERT_EQ(pipe(events_), 0);
  }
  void TearDown() override {
    ClosePeer();
    EXPECT_TRUE(connection_.WaitClosed(kLimit));
    close(commands_[1]);
    close(events_[0]);
    // Work that the IO thread has in hand may still refer to the connection.
    std::promise<void> idle;
    engine::IoThread::Get().PostTask([&idle] { idle.set_value(); });
    idle.get_future().wait();
  }

  void Open() { connection_.Open(commands_[1], events_[0]); }

  void ClosePeer() {
    for (int* end : {&events_[1], &commands_[0]}) {
      if (*end >= 0) close(std::exchange(*end, -1));
    }
  }

  // Writes the messages, each of which ends with a bar here and with a NUL on its way.
  void Reply(std::string messages) {
    std::replace(messages.begin(), messages.end(), '|', '\0');
    ASSERT_EQ(write(events_[1], messages.data(), messages.size()), ssize_t(messages.size()));
  }

  // The next command, without its NUL.
  std::string ReadCommand() {
    std::string command;
    for (char c; read(commands_[0], &c, 1) == 1 && c != '\0';) command += c;
    return command;
  }

  engine::DevToolsConnection connection_;
  int commands_[2] = {-1, -1};
  int events_[2] = {-1, -1};
};

#endif  // TESTS_ENGINE_DEVTOOLSTEST_H_
