#include <string>

#include "include/base/cef_string16.h"
#include "include/internal/cef_string_types.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsScalar(char32_t c) { return c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF); }

// Each reader takes one character from `src` at `at`, which it moves on, and returns false for
// invalid input. What is skipped then is the longest start of a character that could have become
// one, at least one unit.

bool ReadUtf8(const char* src, size_t length, size_t& at, char32_t& c) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(src[i]); };
  const unsigned char lead = byte(at++);
  if (lead < 0x80) {
    c = lead;
    return true;
  }
  int further = 0;
  // The second byte's range keeps overlong forms, surrogates and too large values out.
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    further = 1;
    c = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    further = 2;
    c = lead & 0x0Fu;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    further = 3;
    c = lead & 0x07u;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return false;
  }
  for (; further > 0; --further) {
    if (at == length || byte(at) < low || byte(at) > high) return false;
    c = c << 6 | (byte(at++) & 0x3Fu);
    low = 0x80;
    high = 0xBF;
  }
  return true;
}

bool ReadUtf16(const char16* src, size_t length, size_t& at, char32_t& c) {
  c = src[at++];
  if (IsScalar(c)) return true;
  if (c > 0xDBFF || at == length || src[at] < 0xDC00 || src[at] > 0xDFFF) return false;
  c = 0x10000 + ((c - 0xD800) << 10) + (src[at++] - 0xDC00u);
  return true;
}

bool ReadWide(const wchar_t* src, size_t, size_t& at, char32_t& c) {
  c = static_cast<char32_t>(src[at++]);
  return IsScalar(c);
}

void Append(std::string& text, char32_t c) {
  if (c < 0x80) {
    text += static_cast<char>(c);
    return;
  }
  if (c < 0x800) {
    text += static_cast<char>(0xC0 | c >> 6);
  } else {
    if (c < 0x10000) {
      text += static_cast<char>(0xE0 | c >> 12);
    } else {
      text += static_cast<char>(0xF0 | c >> 18);
      text += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    }
    text += static_cast<char>(0x80 | (c >> 6 & 0x3F));
  }
  text += static_cast<char>(0x80 | (c & 0x3F));
}

void Append(base::string16& text, char32_t c) {
  if (c >= 0x10000) {
    text += static_cast<char16>(0xD800 + ((c - 0x10000) >> 10));
    c = 0xDC00 + ((c - 0x10000) & 0x3FF);
  }
  text += static_cast<char16>(c);
}

void Append(std::wstring& text, char32_t c) { text += static_cast<wchar_t>(c); }

// True when all of the input was valid.
template <typename Unit, typename Reader, typename Text>
bool Convert(const Unit* src, size_t length, Reader read, Text& text) {
  bool valid = true;
  text.reserve(length);
  for (size_t at = 0; at < length;) {
    char32_t c = 0;
    if (!read(src, length, at, c)) {
      c = kReplacement;
      valid = false;
    }
    Append(text, c);
  }
  return valid;
}

}  // namespace

int cef_string_utf8_to_utf16(const char* src, size_t src_len, cef_string_utf16_t* output) {
  base::string16 text;
  const bool valid = Convert(src, src_len, ReadUtf8, text);
  return cef_string_utf16_copy(text.data(), text.length(), output) && valid;
}

int cef_string_utf16_to_utf8(const char16* src, size_t src_len, cef_string_utf8_t* output) {
  std::string text;
  const bool valid = Convert(src, src_len, ReadUtf16, text);
  return cef_string_utf8_set(text.data(), text.length(), output, 1) && valid;
}

int cef_string_wide_to_utf16(const wchar_t* src, size_t src_len, cef_string_utf16_t* output) {
  base::string16 text;
  const bool valid = Convert(src, src_len, ReadWide, text);
  return cef_string_utf16_copy(text.data(), text.length(), output) && valid;
}

int cef_string_utf16_to_wide(const char16* src, size_t src_len, cef_string_wide_t* output) {
  std::wstring text;
  const bool valid = Convert(src, src_len, ReadUtf16, text);
  return cef_string_wide_set(text.data(), text.length(), output, 1) && valid;
}

int cef_string_ascii_to_utf16(const char* src, size_t src_len, cef_string_utf16_t* output) {
  return cef_string_utf8_to_utf16(src, src_len, output);
}
