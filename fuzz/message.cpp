// What comes out of the DevTools pipe: cut into messages, and read. The first byte says in pieces
// of what size it comes, of which nothing may depend, and how long a text may be.

#include <vector>

#include "cef/chromium/base/Json.h"
#include "cef/chromium/devtools/DevToolsMessage.h"
#include "cef/chromium/devtools/MessageBuffer.h"
#include "fuzz/Fuzz.h"

using engine::MessageBuffer;

static std::vector<std::string> Messages(const std::string& stream, size_t piece,
                                         MessageBuffer buffer) {
  std::vector<std::string> messages;
  for (size_t at = 0; at < stream.size(); at += piece) {
    buffer.Feed(stream.data() + at, std::min(piece, stream.size() - at),
                [&](const std::string& message) { messages.push_back(message); });
  }
  return messages;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const std::string stream = Text(data + 1, size - 1) + '\0';
  const size_t longest_text = 8 + data[0] / 16 * 16u, longest_message = 8 * longest_text;
  const MessageBuffer small(longest_text, longest_message);
  const std::vector<std::string> sent = Messages(stream, stream.size(), MessageBuffer());
  const std::vector<std::string> messages = Messages(stream, stream.size(), small);
  Require(messages == Messages(stream, 1 + data[0] % 16, small));
  Require(messages.size() == sent.size());
  for (size_t i = 0; i < messages.size(); ++i) {
    const std::string& message = messages[i];
    Require(message.size() <= longest_message);
    engine::EventMethod(message);
    rapidjson::Document whole, read;
    const bool readable = engine::ReadMessage(message, &read);
    Require(readable || engine::MemberAt(read, "params"));
    // Texts may become shorter; only a message without its end is no JSON any more.
    Require(readable || message.size() == longest_message || !engine::ReadMessage(sent[i], &whole));
    for (const auto& member : read.GetObject()) {
      engine::NumberAt(read, member.name.GetString());
      engine::JsonText(member.value);
    }
  }
  return 0;
}
