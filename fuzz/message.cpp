// What comes out of the DevTools pipe: cut into messages, and read. The first byte says in pieces
// of what size it comes; 255 makes every \x01 a text that is too long to keep.

#include <vector>

#include "cef/chromium/base/Json.h"
#include "cef/chromium/devtools/DevToolsMessage.h"
#include "cef/chromium/devtools/MessageBuffer.h"
#include "fuzz/Fuzz.h"

using engine::MessageBuffer;

static std::vector<std::string> Messages(const std::string& stream, size_t piece) {
  std::vector<std::string> messages;
  MessageBuffer buffer;
  for (size_t at = 0; at < stream.size(); at += piece) {
    buffer.Feed(stream.data() + at, std::min(piece, stream.size() - at),
                [&](const std::string& message) { messages.push_back(message); });
  }
  return messages;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  std::string stream = Text(data + 1, size - 1) + '\0';
  const size_t mark = data[0] == 255 ? stream.find('\x01') : std::string::npos;
  if (mark != std::string::npos) stream.replace(mark, 1, MessageBuffer::kLongestText + 9, 'x');
  const std::vector<std::string> messages = Messages(stream, stream.size());
  Require(mark != std::string::npos || messages == Messages(stream, 1 + data[0]));
  for (const std::string& message : messages) {
    Require(message.size() <= MessageBuffer::kLongestMessage);
    engine::EventMethod(message);
    rapidjson::Document read;
    const bool readable = engine::ReadMessage(message, &read);
    Require(readable || engine::MemberAt(read, "params"));
    for (const auto& member : read.GetObject()) {
      engine::NumberAt(read, member.name.GetString());
      engine::JsonText(member.value);
    }
  }
  return 0;
}
