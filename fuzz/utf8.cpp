// UTF-8 both ways, against the plainest statement of the same rules.

#include "libs/kxaccess/utf8.h"

#include <cstring>

#include "fuzz/Fuzz.h"

namespace {

// Forms of one to six bytes; no overlong ones; any value below 2^31.
std::string EncodeSlowly(uint32_t c) {
  if (c < 0x80) return {static_cast<char>(c)};
  if (c > 0x7FFFFFFF) return {};
  std::string tail;
  uint32_t room = 0x40;  // what the lead can hold, once so many bytes follow
  do {
    tail.insert(tail.begin(), static_cast<char>(0x80 | c % 64));
    c /= 64;
    room /= 2;
  } while (c >= room);
  const auto lead = static_cast<unsigned char>(0x100 - room * 2);
  return static_cast<char>(lead | c) + tail;
}

// The characters up to the first NUL or the first malformed sequence.
std::wstring DecodeSlowly(const std::string& text) {
  std::wstring wide;
  for (size_t at = 0; at < text.size() && text[at] != '\0';) {
    const auto lead = static_cast<unsigned char>(text[at]);
    size_t length = 0;
    while (length < 8 && (lead & 0x80 >> length)) ++length;
    if (length == 1 || length > 6) break;
    if (length == 0) length = 1;
    uint32_t c = length == 1 ? lead : lead & (0x7F >> length);
    size_t used = 1;
    for (; used < length && at + used < text.size() && (text[at + used] & 0xC0) == 0x80; ++used) {
      c = c * 64 + (text[at + used] & 0x3F);
    }
    if (used < length || EncodeSlowly(c).size() != length) break;
    wide += static_cast<wchar_t>(c);
    at += length;
  }
  return wide;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::wstring decoded = DecodeSlowly(bytes);
  Require(Utf8ToWide(bytes) == decoded);
  Require((_dcfUtfString<wchar_t, 4, 1, 1>(bytes.c_str()).data()) == decoded);
  _dcfUtf8RefIn in(bytes.data(), bytes.data() + size);
  uint32_t c;
  for (const wchar_t expected : decoded) Require(in.Get(c) && c == static_cast<uint32_t>(expected));

  std::wstring wide(size / sizeof(wchar_t), L'\0');
  if (!wide.empty()) memcpy(wide.data(), data, wide.size() * sizeof(wchar_t));
  wide = wide.c_str();
  std::string encoded;
  for (const wchar_t one : wide) encoded += EncodeSlowly(static_cast<uint32_t>(one));
  Require(WideToUtf8(wide) == encoded);
  Require((_dcfUtfString<char, 1, 4, 6>(wide.c_str()).data()) == encoded);
  Require(Utf8ToWide(encoded).size() == DecodeSlowly(encoded).size());
  return 0;
}
