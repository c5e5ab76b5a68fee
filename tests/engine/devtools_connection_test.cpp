// The protocol without a browser: the test plays the other end of the pipes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <future>
#include <thread>
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
    EXPECT_TRUE(connection_->WaitClosed(kLimit));
    close(commands_[1]);
    close(events_[0]);
    // Work that the IO thread has in hand may still refer to the connection.
    std::promise<void> idle;
    engine::IoThread::Get().PostTask([&idle] { idle.set_value(); });
    idle.get_future().wait();
  }

  void Open() { connection_->Open(commands_[1], events_[0]); }

  void ClosePeer() {
    if (events_[1] >= 0) close(events_[1]);
    if (commands_[0] >= 0) close(commands_[0]);
    events_[1] = commands_[0] = -1;
  }

  void Reply(const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t count = write(events_[1], bytes.data() + done, bytes.size() - done);
      ASSERT_GT(count, 0);
      done += static_cast<size_t>(count);
    }
  }

  // The next command, without its NUL.
  std::string ReadCommand() {
    std::string command;
    for (char c; read(commands_[0], &c, 1) == 1 && c != '\0';) command += c;
    return command;
  }

  std::unique_ptr<DevToolsConnection> connection_ = std::make_unique<DevToolsConnection>();
  int commands_[2] = {-1, -1};
  int events_[2] = {-1, -1};
};

TEST_F(DevToolsConnectionTest, RepliesFindTheirCommandsWhateverTheOrder) {
  Open();
  std::promise<std::string> first;
  std::promise<std::string> second;
  connection_->Send("", "A.one", JsonObject().Add("text", "\"quoted\"\n"),
                    [&](const JsonValue* result, const std::string&) {
                      first.set_value(engine::TextAt(*result, "value"));
                    });
  connection_->Send("S", "A.two", {}, [&](const JsonValue* result, const std::string& error) {
    second.set_value(result ? "no error" : error);
  });
  EXPECT_EQ(ReadCommand(), R"({"id":1,"method":"A.one","params":{"text":"\"quoted\"\n"}})");
  EXPECT_EQ(ReadCommand(), R"({"id":2,"method":"A.two","params":{},"sessionId":"S"})");
  // Two messages at once, nonsense among them, and one that comes in pieces.
  using namespace std::string_literals;
  Reply(
      "{\"id\":99,\"result\":{}}\0not json\0{\"id\":2,\"error\":{\"message\":\"refused\"}}\0{\"id"s);
  EXPECT_EQ(second.get_future().get(), "refused");
  Reply("\":1,\"result\":{\"value\":\"v\"}}\0"s);
  EXPECT_EQ(first.get_future().get(), "v");
}

TEST_F(DevToolsConnectionTest, EventsGoToTheHandlerOfTheirMethod) {
  std::vector<std::string> seen;
  std::promise<void> last;
  connection_->On("A.happened", [&](const std::string& session, const JsonValue& params) {
    seen.push_back(session + ":" + engine::TextAt(params, "what"));
  });
  connection_->On("A.ended", [&](const std::string&, const JsonValue&) { last.set_value(); });
  Open();
  using namespace std::string_literals;
  Reply(
      "{\"method\":\"A.happened\",\"params\":{\"what\":\"x\"},\"sessionId\":\"S\"}\0"
      "{\"method\":\"A.unknown\"}\0{\"method\":\"A.happened\"}\0{\"method\":\"A.ended\"}\0"s);
  last.get_future().wait();
  EXPECT_THAT(seen, ElementsAre("S:x", ":"));
}

// Chromium stops reading while its own events are not taken; both sides would wait for ever.
TEST_F(DevToolsConnectionTest, AFullPipeDoesNotStopTheReader) {
  std::promise<void> event;
  connection_->On("A.event", [&](const std::string&, const JsonValue&) { event.set_value(); });
  Open();
  constexpr int kCommands = 200;
  const std::string text(10000, 'x');
  for (int i = 0; i < kCommands; ++i) {
    connection_->Send("", "A.big", JsonObject().Add("text", text));
  }
  using namespace std::string_literals;
  Reply("{\"method\":\"A.event\"}\0"s);
  ASSERT_EQ(event.get_future().wait_for(kLimit), std::future_status::ready);
  // Nothing is lost and nothing out of order.
  for (int i = 1; i <= kCommands; ++i) {
    const std::string command = ReadCommand();
    ASSERT_EQ(command.find("{\"id\":" + std::to_string(i) + ","), 0u);
    ASSERT_GT(command.size(), text.size());
  }
}

TEST_F(DevToolsConnectionTest, TheEndOfThePipeAnswersEverybody) {
  std::promise<void> closed;
  connection_->OnClosed([&] { closed.set_value(); });
  Open();
  std::promise<std::string> waiting;
  connection_->Send("", "A.one", {}, [&](const JsonValue* result, const std::string& error) {
    EXPECT_EQ(result, nullptr);
    waiting.set_value(error);
  });
  std::thread peer([this] {
    ReadCommand();
    ReadCommand();
    ClosePeer();
  });
  std::string error;
  EXPECT_FALSE(connection_->Call("", "A.two", {}, kLimit, &error));
  peer.join();
  EXPECT_THAT(error, ::testing::HasSubstr("closed"));
  EXPECT_EQ(waiting.get_future().get(), error);
  closed.get_future().wait();
  EXPECT_FALSE(connection_->IsOpen());
  // Also who comes late.
  EXPECT_FALSE(connection_->Call("", "A.three", {}, kLimit, &error));
}

TEST_F(DevToolsConnectionTest, ASilentPeerEndsTheWaitInTime) {
  Open();
  std::string error;
  EXPECT_FALSE(connection_->Call("", "A.one", {}, std::chrono::milliseconds(50), &error));
  EXPECT_THAT(error, ::testing::HasSubstr("A.one"));
}

}  // namespace
