// The protocol without a browser: the test plays the other end of the pipes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "cef/chromium/DevToolsConnection.h"
#include "cef/chromium/IoThread.h"

using engine::DevToolsConnection;
using engine::JsonObject;
using engine::JsonValue;
using ::testing::ElementsAre;

namespace {

constexpr std::chrono::seconds kLimit{10};

class DevToolsConnectionTest : public ::testing::Test {
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

  DevToolsConnection connection_;
  int commands_[2] = {-1, -1};
  int events_[2] = {-1, -1};
};

TEST_F(DevToolsConnectionTest, RepliesAndEventsFindTheirReceivers) {
  std::vector<std::string> events;
  connection_.On("A.happened", [&](const std::string& session, const JsonValue& params) {
    events.push_back(session + ":" + engine::TextAt(params, "what"));
  });
  Open();
  std::promise<std::string> first, second;
  connection_.Send("", "A.one", JsonObject().Add("text", "\"quoted\"\n"),
                   [&](const JsonValue* result, const std::string&) {
                     first.set_value(engine::TextAt(*result, "value"));
                   });
  connection_.Send("S", "A.two", {}, [&](const JsonValue* result, const std::string& error) {
    second.set_value(result ? "no error" : error);
  });
  EXPECT_EQ(ReadCommand(), R"({"id":1,"method":"A.one","params":{"text":"\"quoted\"\n"}})");
  EXPECT_EQ(ReadCommand(), R"({"id":2,"method":"A.two","params":{},"sessionId":"S"})");
  // Several messages at once, nonsense among them, and one that comes in pieces.
  Reply(R"({"method":"A.happened","params":{"what":"x"},"sessionId":"S"}|{"method":"A.unknown"}|)"
        R"({"method":"A.happened"}|{"id":99,"result":{}}|not json|)"
        R"({"id":2,"error":{"message":"refused"}}|{"id)");
  EXPECT_EQ(second.get_future().get(), "refused");
  Reply(R"(":1,"result":{"value":"v"}}|)");
  EXPECT_EQ(first.get_future().get(), "v");
  EXPECT_THAT(events, ElementsAre("S:x", ":"));
}

// Also of a command whose reply nobody awaits; other errors do not count.
TEST_F(DevToolsConnectionTest, TheFirstCommandThatIsNotKnownIsNamed) {
  Open();
  for (const char* method : {"A.refused", "A.unknown", "A.unknownAsWell"}) {
    connection_.Send("", method);
  }
  std::promise<void> last;
  connection_.Send("", "A.last", {},
                   [&](const JsonValue*, const std::string&) { last.set_value(); });
  Reply(R"({"id":1,"error":{"code":-32000}}|{"id":2,"error":{"code":-32601}}|)"
        R"({"id":3,"error":{"code":-32601}}|{"id":4,"result":{}}|)");
  ASSERT_EQ(last.get_future().wait_for(kLimit), std::future_status::ready);
  EXPECT_EQ(connection_.UnknownCommand(), "A.unknown");
}

// Chromium stops reading while its own events are not taken; both sides would wait for ever.
TEST_F(DevToolsConnectionTest, AFullPipeDoesNotStopTheReader) {
  std::promise<void> event;
  connection_.On("A.event", [&](const std::string&, const JsonValue&) { event.set_value(); });
  Open();
  constexpr int kCommands = 200;
  const std::string text(10000, 'x');
  for (int i = 0; i < kCommands; ++i) {
    connection_.Send("", "A.big", JsonObject().Add("text", text));
  }
  Reply(R"({"method":"A.event"}|)");
  ASSERT_EQ(event.get_future().wait_for(kLimit), std::future_status::ready);
  // Nothing is lost and nothing out of order.
  for (int i = 1; i <= kCommands; ++i) {
    const std::string command = ReadCommand();
    ASSERT_EQ(command.find("{\"id\":" + std::to_string(i) + ","), 0u);
    ASSERT_GT(command.size(), text.size());
  }
}

TEST_F(DevToolsConnectionTest, TheEndOfThePipeAnswersEverybody) {
  Open();
  std::promise<std::string> waiting;
  connection_.Send("", "A.one", {}, [&](const JsonValue* result, const std::string& error) {
    EXPECT_EQ(result, nullptr);
    waiting.set_value(error);
  });
  std::thread peer([this] {
    ReadCommand();
    ReadCommand();
    ClosePeer();
  });
  std::string error;
  EXPECT_FALSE(connection_.Call("", "A.two", {}, kLimit, &error));
  peer.join();
  EXPECT_THAT(error, ::testing::HasSubstr("closed"));
  EXPECT_EQ(waiting.get_future().get(), error);
  // Also who comes late.
  EXPECT_FALSE(connection_.Call("", "A.three", {}, kLimit, &error));
}

TEST_F(DevToolsConnectionTest, ASilentPeerEndsTheWaitInTime) {
  Open();
  std::string error;
  EXPECT_FALSE(connection_.Call("", "A.one", {}, std::chrono::milliseconds(50), &error));
  EXPECT_THAT(error, ::testing::HasSubstr("A.one"));
}

}  // namespace
