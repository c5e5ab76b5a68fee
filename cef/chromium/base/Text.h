// Small helpers for texts.

#ifndef CEF_CHROMIUM_BASE_TEXT_H_
#define CEF_CHROMIUM_BASE_TEXT_H_

#include <algorithm>
#include <string>
#include <string_view>

namespace engine {

// With ASCII letters in lower case.
inline std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

inline bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_TEXT_H_
