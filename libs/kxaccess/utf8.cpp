#include "libs/kxaccess/utf8.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace {

struct SequenceForm {
  std::uint32_t first;    // smallest code point that needs this form
  unsigned char lead;     // fixed bits of the first byte
  unsigned char payload;  // bits of the first byte that carry the value
};

// By the number of bytes, from one to six.
constexpr SequenceForm kForms[] = {
    {0x0, 0x00, 0x7F},     {0x80, 0xC0, 0x1F},     {0x800, 0xE0, 0x0F},
    {0x10000, 0xF0, 0x07}, {0x200000, 0xF8, 0x03}, {0x4000000, 0xFC, 0x01},
};
constexpr int kLongest = 6;

int BytesForCodePoint(std::uint32_t codePoint) {
  int count = 1;
  while (count < kLongest && codePoint >= kForms[count].first) ++count;
  return count;
}

// Length of the sequence that a byte opens; 0 when it opens none.
int BytesForLead(unsigned char lead) {
  for (int count = 1; count <= kLongest; ++count) {
    const SequenceForm& form = kForms[count - 1];
    if ((lead & ~form.payload & 0xFF) == form.lead) return count;
  }
  return 0;
}

}  // namespace

int _dcfUtf8RefOut::Put(std::uint32_t codePoint) {
  if (codePoint & 0x80000000u) return kNotEncodable;
  const int count = BytesForCodePoint(codePoint);
  if (m_end - m_pos < count) return kNoRoom;
  int shift = 6 * (count - 1);
  *m_pos++ = static_cast<char>(kForms[count - 1].lead | (codePoint >> shift));
  while (shift > 0) {
    shift -= 6;
    *m_pos++ = static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  }
  return kWritten;
}

bool _dcfUtf8RefIn::Get(std::uint32_t& codePoint) {
  if (m_bounded && m_pos == m_end) return false;
  const unsigned char lead = static_cast<unsigned char>(*m_pos++);
  codePoint = lead;
  const int count = BytesForLead(lead);
  if (count == 0) return false;
  if (m_bounded && m_end - m_pos < count - 1) return false;

  const SequenceForm& form = kForms[count - 1];
  codePoint = lead & form.payload;
  for (int i = 1; i < count; ++i) {
    const unsigned char next = static_cast<unsigned char>(*m_pos);
    if ((next & 0xC0) != 0x80) return false;
    codePoint = codePoint << 6 | (next & 0x3F);
    ++m_pos;
  }
  return codePoint >= form.first;
}

template <typename Unit, int kUnitBytes, int kSourceBytes, int kUnitsPerSource>
void _dcfUtfString<Unit, kUnitBytes, kSourceBytes, kUnitsPerSource>::Reserve(size_t units) {
  if (units <= m_capacity) return;
  size_t capacity = m_capacity == 0 ? units : m_capacity;
  while (capacity < units) capacity *= 2;
  Unit* data = new Unit[capacity];
  std::copy_n(m_data, m_used, data);
  delete[] m_data;
  m_data = data;
  m_capacity = capacity;
}

template <>
void _dcfUtfString<char, 1, 4, 6>::SetString(const wchar_t* text) {
  const size_t length = text ? std::wcslen(text) : 0;
  Reserve(length * 6 + 1);
  _dcfUtf8RefOut out(m_data, m_data + m_capacity - 1);
  for (size_t i = 0; i < length; ++i) {
    if (out.Put(static_cast<std::uint32_t>(text[i])) == _dcfUtf8RefOut::kNoRoom) break;
  }
  *out.position() = '\0';
  m_used = static_cast<size_t>(out.position() - m_data) + 1;
}

template <>
void _dcfUtfString<wchar_t, 4, 1, 1>::SetString(const char* text) {
  Reserve((text ? std::strlen(text) : 0) + 1);
  size_t length = 0;
  if (text) {
    _dcfUtf8RefIn in(text, nullptr);
    std::uint32_t codePoint;
    while (in.Get(codePoint) && codePoint != 0) m_data[length++] = static_cast<wchar_t>(codePoint);
  }
  m_data[length] = L'\0';
  m_used = length + 1;
}

template class _dcfUtfString<char, 1, 4, 6>;
template class _dcfUtfString<wchar_t, 4, 1, 1>;

std::string WideToUtf8(const std::wstring& text) {
  return _dcfUtfString<char, 1, 4, 6>(text.c_str()).data();
}

std::wstring Utf8ToWide(const std::string& text) {
  return _dcfUtfString<wchar_t, 4, 1, 1>(text.c_str()).data();
}
