// The protocol, and the cookies behind it.

#include <gmock/gmock.h>

#include <thread>
#include <vector>

#include "cef/chromium/cookies/CookieStore.h"
#include "tests/engine/DevToolsTest.h"

using engine::JsonObject;
using engine::JsonValue;
using engine::MessageBuffer;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class DevToolsConnectionTest : public DevToolsTest {
 protected:
  engine::CookieStore store_{connection_};  // the IO thread may still use it after the last reply
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
  EXPECT_THAT(error, HasSubstr("closed"));
  EXPECT_EQ(waiting.get_future().get(), error);
  // Also who comes late.
  EXPECT_FALSE(connection_.Call("", "A.three", {}, kLimit, &error));
}

TEST_F(DevToolsConnectionTest, EveryCommandHasItsTime) {
  Open();
  std::string error;
  EXPECT_FALSE(connection_.Call("", "A.one", {}, std::chrono::milliseconds(50), &error));
  EXPECT_THAT(error, HasSubstr("A.one"));
  std::promise<std::string> given_up, answered;
  int calls = 0;
  connection_.Send(
      "", "A.answered", {},
      [&](const JsonValue* result, const std::string&) { answered.set_value(result ? "ok" : ""); },
      kLimit);
  connection_.Send(
      "", "A.late", {},
      [&](const JsonValue* result, const std::string& text) {
        ++calls;
        given_up.set_value(result ? "" : text);
      },
      std::chrono::milliseconds(50));
  EXPECT_THAT(given_up.get_future().get(), HasSubstr("A.late"));
  // An answer that comes now is nobody's any more.
  Reply(R"({"id":3,"result":{}}|{"id":2,"result":{}}|)");
  EXPECT_EQ(answered.get_future().get(), "ok");
  EXPECT_EQ(calls, 1);
}

// Chromium's way to write bytes that are no UTF-8, which is no JSON.
TEST_F(DevToolsConnectionTest, HalvesOfSurrogatePairsAreRead) {
  const struct {
    const char* written;
    const char* read;
  } cases[] = {{R"(\udaae)", "\xEF\xBF\xBD"},
               {R"(\udc80x)", "\xEF\xBF\xBDx"},
               {R"(\uDAAE\udaae\u0041)", "\xEF\xBF\xBD\xEF\xBF\xBD\x41"},
               {R"(\ud83d\ude00)", "\xF0\x9F\x98\x80"},
               {R"(\ud83d\ud83d\ude00)", "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
               {R"(\\udaae)", "\\udaae"}};
  std::vector<std::string> events;
  connection_.On("A.happened", [&](const std::string&, const JsonValue& params) {
    events.push_back(engine::TextAt(params, "what"));
  });
  std::promise<std::string> last;
  Open();
  connection_.Send("", "A.last", {}, [&](const JsonValue* result, const std::string&) {
    last.set_value(result ? engine::TextAt(*result, "what") : "");
  });
  for (const auto& entry : cases) {
    Reply(std::string(R"({"method":"A.happened","params":{"what":")") + entry.written + "\"}}|");
  }
  Reply(R"({"id":1,"result":{"what":"\udead"}}|)");
  EXPECT_EQ(last.get_future().get(), "\xEF\xBF\xBD");
  ASSERT_EQ(events.size(), std::size(cases));
  for (size_t i = 0; i < events.size(); ++i) EXPECT_EQ(events[i], cases[i].read);
}

TEST_F(DevToolsConnectionTest, NothingUnreadableIsLost) {
  std::vector<std::string> events;
  connection_.On("A.paused", [&](const std::string&, const JsonValue& params) {
    events.push_back(engine::TextAt(params, "requestId") +
                     std::to_string(engine::NumberAt(params, "number")));
  });
  std::promise<std::string> failed;
  Open();
  connection_.Send("", "A.one", {}, [&](const JsonValue* result, const std::string& error) {
    failed.set_value(result ? "" : error);
  });
  Reply(
      R"({"method":"A.paused","params":{"requestId":"r","number":7,"request":{"number":8,"x":\}}|)"
      R"({"id":1,"result":{"a":[1,}}|)");
  EXPECT_EQ(failed.get_future().get(), "the reply cannot be read");
  EXPECT_THAT(events, ElementsAre("r7"));
}

// The body of a large form, in front of and behind what matters; and no end of small parts.
TEST_F(DevToolsConnectionTest, LargeMessagesAreCutAndStayReadable) {
  std::vector<std::string> events;
  connection_.On("A.paused", [&](const std::string&, const JsonValue& params) {
    const JsonValue* body = engine::MemberAt(params, "body");
    events.push_back(engine::TextAt(params, "requestId") + engine::TextAt(params, "end"));
    EXPECT_LE(body ? body->GetStringLength() : 0, MessageBuffer::kLongestText);
  });
  std::promise<void> done;
  Open();
  connection_.Send(
      "", "A.one", {}, [&](const JsonValue*, const std::string&) { done.set_value(); },
      connection_.kNoLimit);
  std::string parts;
  while (parts.size() < 2 * MessageBuffer::kLongestMessage) parts += "{\"a\":[1,2,3]},";
  for (const char* unit : {"x", "\\\"", "\\u00e9", "\\ud83d\\ude00", "\xC3\xA9"}) {
    std::string body;
    while (body.size() < 2 * MessageBuffer::kLongestText) body += unit;
    Reply(R"({"method":"A.paused","params":{"requestId":"r","body":")" + body +
          R"(","end":"e"}}|)");
  }
  Reply(R"({"method":"A.paused","params":{"requestId":"s","parts":[)" + parts +
        R"(0],"end":"e"}}|{"id":1,"result":{}}|)");
  // A sanitizer on a busy machine takes its time, up to the limit of the whole test.
  ASSERT_EQ(done.get_future().wait_for(18 * kLimit), std::future_status::ready);
  EXPECT_THAT(events, ElementsAre("re", "re", "re", "re", "re", "s"));
}

// Chromium takes all cookies of a command or none. It deletes none but by their replacement, which
// has to be for the same place.
TEST_F(DevToolsConnectionTest, ACookieThatIsRefusedDoesNotKeepTheOthers) {
  Open();
  std::promise<int> deleted;
  store_.Delete([](const engine::Cookie& cookie) { return cookie.name != "c"; },
                [&](int count) { deleted.set_value(count); });
  EXPECT_THAT(ReadCommand(), HasSubstr("Storage.getCookies"));
  Reply(R"({"id":1,"result":{"cookies":[{"name":"a","domain":"a.test","path":"/"},{"name":"c"},)"
        R"({"name":"b","domain":".b.test","path":"/in","secure":true,"httpOnly":true,)"
        R"("partitionKey":{"topLevelSite":"x"}}]}}|)");
  const std::string a =
      R"({"name":"a","value":"expired","path":"/","secure":false,"httpOnly":false,"expires":1,)"
      R"("url":"http://a.test/"})";
  const std::string b =
      R"({"name":"b","value":"expired","path":"/in","partitionKey":{"topLevelSite":"x"},)"
      R"("secure":true,"httpOnly":true,"expires":1,"domain":".b.test"})";
  // Longer paths first, as they are sent.
  EXPECT_THAT(ReadCommand(), HasSubstr("[" + b + "," + a + "]"));
  Reply(R"({"id":2,"error":{"message":"Invalid cookie fields"}}|)");
  EXPECT_THAT(ReadCommand(), HasSubstr("[" + b + "]"));
  EXPECT_THAT(ReadCommand(), HasSubstr("[" + a + "]"));
  Reply(R"({"id":3,"error":{"message":"Invalid cookie fields"}}|{"id":4,"result":{}}|)");
  EXPECT_EQ(deleted.get_future().get(), 1);
}

}  // namespace
