// Cuts what comes out of the DevTools pipe into messages: one JSON text and a NUL each.

#ifndef CEF_CHROMIUM_DEVTOOLS_MESSAGEBUFFER_H_
#define CEF_CHROMIUM_DEVTOOLS_MESSAGEBUFFER_H_

#include <cstddef>
#include <functional>
#include <string>

namespace engine {

// Chromium puts the whole body of a form into its messages, three times over, and cannot be told to
// leave it out. So texts inside a message are cut at the length of the longest address there is,
// which keeps the message readable; one that is still too long loses its end.
class MessageBuffer {
 public:
  static constexpr size_t kLongestText = 2u << 20;
  static constexpr size_t kLongestMessage = 16u << 20;

  using Handler = std::function<void(const std::string& message)>;

  // The limits, in bytes: of a text inside a message, and of the message then.
  explicit MessageBuffer(size_t longest_text = kLongestText,
                         size_t longest_message = kLongestMessage)
      : longest_text_(longest_text), longest_message_(longest_message) {}

  // Takes up bytes in pieces of any size, and calls `handler` for every message that is complete.
  void Feed(const char* data, size_t size, const Handler& handler);

 private:
  void Add(const char* data, size_t size);
  void AddCutting(const char* data, size_t size);

  size_t longest_text_;
  size_t longest_message_;
  std::string message_;  // the unfinished one
  // Only of a message that has become longer than one text may be.
  bool cutting_ = false;
  bool in_text_ = false;
  size_t text_length_ = 0;
  bool after_backslash_ = false;
  int digits_left_ = 0;  // of a character that is written as its number
  bool dropping_ = false;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_DEVTOOLS_MESSAGEBUFFER_H_
