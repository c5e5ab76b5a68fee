#include "cef/chromium/devtools/MessageBuffer.h"

#include <cstring>

namespace engine {

void MessageBuffer::Feed(const char* data, size_t size, const Handler& handler) {
  while (size > 0) {
    const char* end = static_cast<const char*>(memchr(data, '\0', size));
    Add(data, end ? static_cast<size_t>(end - data) : size);
    if (!end) return;
    size -= static_cast<size_t>(end + 1 - data);
    data = end + 1;
    std::string message = std::move(message_);
    *this = MessageBuffer(longest_text_, longest_message_);
    handler(message);
    // Room that is at hand need not be asked for again, unless it is much.
    if (message.capacity() > longest_text_) continue;
    message.clear();
    message_ = std::move(message);
  }
}

void MessageBuffer::Add(const char* data, size_t size) {
  if (!cutting_ && message_.size() + size > longest_text_) {
    cutting_ = true;
    const std::string begin = std::move(message_);
    message_.clear();
    AddCutting(begin.data(), begin.size());
  }
  if (cutting_) {
    AddCutting(data, size);
  } else {
    message_.append(data, size);
  }
}

void MessageBuffer::AddCutting(const char* data, size_t size) {
  for (const char* const end = data + size; data < end; ++data) {
    const char c = *data;
    if (!in_text_) {
      in_text_ = c == '"';
      text_length_ = 0;
    } else if (after_backslash_) {
      after_backslash_ = false;
      digits_left_ = c == 'u' ? 4 : 0;
    } else if (digits_left_ > 0) {
      --digits_left_;
    } else if (c == '"') {
      in_text_ = dropping_ = false;
    } else {
      // Never inside an escape or a character.
      if (text_length_ >= longest_text_ && (c & 0xC0) != 0x80) dropping_ = true;
      after_backslash_ = c == '\\';
    }
    ++text_length_;
    if (!dropping_ && message_.size() < longest_message_) message_ += c;
  }
}

}  // namespace engine
