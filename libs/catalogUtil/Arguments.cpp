#include "libs/catalogUtil/Arguments.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "libs/catalogUtil/Utils.h"

namespace orb::CatalogUtil {

namespace {

constexpr size_t kHeaderSize = 3;
constexpr size_t kRenderingSize = 32;

struct Header {
  unsigned char type;
  size_t length;
};

Header HeaderAt(const std::vector<unsigned char>& bytes, size_t offset) {
  return {bytes[offset], bytes[offset + 1] | static_cast<size_t>(bytes[offset + 2]) << 8};
}

template <typename Value, typename Printed>
bool Render(const unsigned char* bytes, size_t length, const wchar_t* format, std::wstring& out) {
  Value value;
  if (length < sizeof value) return false;
  std::memcpy(&value, bytes, sizeof value);
  wchar_t buffer[kRenderingSize];
  std::swprintf(buffer, kRenderingSize, format, static_cast<Printed>(value));
  out = buffer;
  return true;
}

bool IsEscaped(const std::wstring& text, size_t pos) { return pos > 0 && text[pos - 1] == L'\\'; }

size_t FindClosingBrace(const std::wstring& text, size_t from) {
  size_t pos = text.find(L'}', from);
  while (pos != std::wstring::npos && IsEscaped(text, pos)) pos = text.find(L'}', pos + 1);
  return pos;
}

}  // namespace

bool FindPlaceholder(const std::wstring& text, size_t from, Placeholder& found) {
  for (;;) {
    const size_t open = text.find(L'{', from);
    if (open == std::wstring::npos) return false;
    from = open + 1;
    if (IsEscaped(text, open)) continue;
    const size_t close = FindClosingBrace(text, from);
    if (close == std::wstring::npos) return false;

    // Of several opening braces the last one counts.
    const size_t start = text.rfind(L'{', close);
    from = start + 1;
    if (IsEscaped(text, start)) continue;
    const std::wstring inner = text.substr(from, close - from);
    const size_t colon = inner.find(L':');
    const std::wstring specifier = colon == std::wstring::npos ? L"" : inner.substr(colon + 1);
    unsigned int index;
    if (!convertStringToNumber(inner.substr(0, colon), index)) continue;
    found = {start, close - start + 1, index, specifier == L"h" || specifier == L"H"};
    return true;
  }
}

Arguments& Arguments::addArgument(ArgTypes type, const unsigned char* length2,
                                  const unsigned char* bytes, size_t n) {
  m_bytes.push_back(type);
  m_bytes.insert(m_bytes.end(), length2, length2 + 2);
  m_bytes.insert(m_bytes.end(), bytes, bytes + n);
  return *this;
}

Arguments& Arguments::operator<<(unsigned int value) {
  const unsigned char length[] = {sizeof value, 0};
  unsigned char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  return addArgument(kUnsigned32, length, bytes, sizeof value);
}

Arguments& Arguments::operator<<(const wchar_t* text) {
  if (!text) std::abort();
  const auto size = static_cast<std::uint16_t>(std::wcslen(text) * sizeof *text);
  const unsigned char length[] = {static_cast<unsigned char>(size & 0xFF),
                                  static_cast<unsigned char>(size >> 8)};
  return addArgument(kWideString, length, reinterpret_cast<const unsigned char*>(text), size);
}

bool Arguments::getArgumentBytesAt(size_t index, size_t& offset, size_t& size) const {
  size_t count = 0;
  for (size_t pos = 0; m_bytes.size() - pos >= kHeaderSize;) {
    const Header header = HeaderAt(m_bytes, pos);
    const size_t entry = kHeaderSize + header.length;
    if (m_bytes.size() - pos < entry) return false;
    if (header.type <= kSigned64 && count++ == index) {
      if (header.length == 0 && header.type != kWideString) return false;
      offset = pos;
      size = entry;
      return true;
    }
    pos += entry;
  }
  return false;
}

bool Arguments::toString(size_t index, std::wstring& out, ArgFormatSpecifiers spec) const {
  size_t offset, size;
  if (!getArgumentBytesAt(index, offset, size)) return false;
  const unsigned char* value = m_bytes.data() + offset + kHeaderSize;
  const size_t length = size - kHeaderSize;
  const bool hex = spec == kHexadecimal;
  const wchar_t* const unsigned32 = hex ? L"0x%08X" : L"%u";
  const wchar_t* const signed32 = hex ? L"0x%08X" : L"%d";
  const wchar_t* const unsigned64 = hex ? L"0x%016llX" : L"%llu";
  const wchar_t* const signed64 = hex ? L"0x%016llX" : L"%lld";

  switch (m_bytes[offset]) {
    case kUnsigned8:
      return Render<std::uint8_t, unsigned int>(value, length, unsigned32, out);
    case kUnsigned16:
      return Render<std::uint16_t, unsigned int>(value, length, unsigned32, out);
    case kUnsigned32:
      return Render<std::uint32_t, unsigned int>(value, length, unsigned32, out);
    case kSigned8:
      return Render<std::int8_t, int>(value, length, signed32, out);
    case kSigned16:
      return Render<std::int16_t, int>(value, length, signed32, out);
    case kSigned32:
      return Render<std::int32_t, int>(value, length, signed32, out);
    case kUnsigned64:
      return Render<std::uint64_t, unsigned long long>(value, length, unsigned64, out);
    case kSigned64:
      return Render<std::int64_t, long long>(value, length, signed64, out);
    case kWideString:
      out.resize(length / sizeof(wchar_t));
      std::memcpy(out.data(), value, out.size() * sizeof(wchar_t));
      return true;
  }
  return false;
}

bool Arguments::formatString(std::wstring& text) const {
  if (text.empty()) return false;
  size_t from = 0;
  Placeholder place;
  while (FindPlaceholder(text, from, place)) {
    std::wstring rendering;
    from = place.begin + 1;
    if (toString(place.index, rendering, place.hexadecimal ? kHexadecimal : kDecimal)) {
      text.replace(place.begin, place.size, rendering);
      from = 0;
    }
  }
  return true;
}

}  // namespace orb::CatalogUtil
