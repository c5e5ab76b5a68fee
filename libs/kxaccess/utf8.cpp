#include "libs/kxaccess/utf8.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>

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

// Whole texts go through Decode and Encode: the common forms in place and ASCII in blocks, as long
// as there is room for a block on both sides; the rest by Get and Put.
constexpr std::ptrdiff_t kBlock = 16;

// The first byte of a text is the lowest of a number read from it.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

template <typename Number>
Number Load(const char* from) {
  Number number;
  std::memcpy(&number, from, sizeof number);
  return number;
}

// The code point of a sequence that has been read as one number.
std::uint32_t OfTwo(std::uint32_t bytes) { return (bytes & 0x1F) << 6 | (bytes >> 8 & 0x3F); }

std::uint32_t OfThree(std::uint32_t bytes) {
  return (bytes & 0x0F) << 12 | (bytes >> 2 & 0xFC0) | (bytes >> 16 & 0x3F);
}

std::uint32_t OfFour(std::uint32_t bytes) {
  return (bytes & 0x07) << 18 | (bytes << 4 & 0x3F000) | (bytes >> 10 & 0xFC0) |
         (bytes >> 24 & 0x3F);
}

// How many bytes of a block precede the first that is not ASCII.
std::ptrdiff_t LeadingAscii(const char* block) {
  for (std::ptrdiff_t i = 0; i < kBlock; i += 8) {
    const std::uint64_t others = Load<std::uint64_t>(block + i) & 0x8080808080808080u;
    if (others != 0) return i + __builtin_ctzll(others) / 8;
  }
  return kBlock;
}

// Writes a whole block and says how much of it is ASCII. The copy tells the compiler that source
// and target do not overlap.
std::ptrdiff_t WidenAscii(const char* from, wchar_t* to) {
  const std::ptrdiff_t count = LeadingAscii(from);
  char block[kBlock];
  std::memcpy(block, from, sizeof block);
  for (std::ptrdiff_t i = 0; i < kBlock; ++i) to[i] = block[i];
  return count;
}

// Decodes until the bytes end or the room does; moves both cursors. False at a malformed sequence.
bool Decode(const char*& from, const char* end, wchar_t*& to, const wchar_t* to_end) {
  const char* at = from;
  wchar_t* out = to;
  bool whole = true;
  while (whole && at != end && out != to_end) {
    if (end - at >= kBlock && to_end - out >= kBlock) {
      const auto bytes = Load<std::uint32_t>(at);
      if ((bytes & 0x8080) == 0) {
        const std::ptrdiff_t count = WidenAscii(at, out);
        at += count;
        out += count;
        continue;
      }
      if ((bytes & 0xC0E0) == 0x80C0 && OfTwo(bytes) >= kForms[1].first) {
        *out++ = static_cast<wchar_t>(OfTwo(bytes));
        at += 2;
        continue;
      }
      if ((bytes & 0xC0C0F0) == 0x8080E0 && OfThree(bytes) >= kForms[2].first) {
        *out++ = static_cast<wchar_t>(OfThree(bytes));
        at += 3;
        continue;
      }
      if ((bytes & 0xC0C0C0F8) == 0x808080F0 && OfFour(bytes) >= kForms[3].first) {
        *out++ = static_cast<wchar_t>(OfFour(bytes));
        at += 4;
        continue;
      }
    }
    if ((*at & 0x80) == 0) {
      *out++ = *at++;
      continue;
    }
    _dcfUtf8RefIn in(at, end);
    std::uint32_t codePoint;
    whole = in.Get(codePoint);
    if (whole) *out++ = static_cast<wchar_t>(codePoint);
    at = in.position();
  }
  from = at;
  to = out;
  return whole;
}

bool NarrowAscii(const wchar_t* from, char* to) {
  std::uint32_t all = 0;
  for (std::ptrdiff_t i = 0; i < kBlock; ++i) all |= static_cast<std::uint32_t>(from[i]);
  if (all >= 0x80) return false;
  char block[kBlock];
  for (std::ptrdiff_t i = 0; i < kBlock; ++i) block[i] = static_cast<char>(from[i]);
  std::memcpy(to, block, sizeof block);
  return true;
}

// Encodes the characters, leaving out what cannot be encoded. There is room for six bytes each.
char* Encode(const wchar_t* at, const wchar_t* end, char* out) {
  while (at != end) {
    if (end - at >= kBlock && NarrowAscii(at, out)) {
      at += kBlock;
      out += kBlock;
      continue;
    }
    for (const wchar_t* const stop = at + std::min(kBlock, end - at); at != stop; ++at) {
      const auto c = static_cast<std::uint32_t>(*at);
      if (c < 0x80) {
        *out++ = static_cast<char>(c);
      } else if (c < 0x800) {
        out[0] = static_cast<char>(0xC0 | c >> 6);
        out[1] = static_cast<char>(0x80 | (c & 0x3F));
        out += 2;
      } else if (c < 0x10000) {
        out[0] = static_cast<char>(0xE0 | c >> 12);
        out[1] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out[2] = static_cast<char>(0x80 | (c & 0x3F));
        out += 3;
      } else {
        _dcfUtf8RefOut rest(out, out + kLongest);
        rest.Put(c);
        out = rest.position();
      }
    }
  }
  return out;
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
  Reserve(length * kLongest + 1);
  char* const end = Encode(text, text + length, m_data);
  *end = '\0';
  m_used = static_cast<size_t>(end - m_data) + 1;
}

template <>
void _dcfUtfString<wchar_t, 4, 1, 1>::SetString(const char* text) {
  const size_t length = text ? std::strlen(text) : 0;
  Reserve(length + 1);
  wchar_t* end = m_data;
  Decode(text, text + length, end, m_data + length);
  *end = L'\0';
  m_used = static_cast<size_t>(end - m_data) + 1;
}

template class _dcfUtfString<char, 1, 4, 6>;
template class _dcfUtfString<wchar_t, 4, 1, 1>;

std::string WideToUtf8(const std::wstring& text) {
  constexpr std::ptrdiff_t kPiece = 16 * kBlock;
  std::string narrow;
  const wchar_t* from = text.c_str();
  const wchar_t* const end = from + std::wcslen(from);
  narrow.reserve(static_cast<size_t>(end - from));
  while (from != end) {
    char piece[kPiece * kLongest];
    const wchar_t* const stop = from + std::min(kPiece, end - from);
    narrow.append(piece, Encode(from, stop, piece));
    from = stop;
  }
  return narrow;
}

std::wstring Utf8ToWide(const std::string& text) {
  std::wstring wide;
  AppendWide(text, wide);
  return wide;
}

void AppendWide(std::string_view text, std::wstring& wide) {
  text = text.substr(0, text.find('\0'));
  wide.reserve(wide.size() + text.size());
  const char* from = text.data();
  const char* const end = from + text.size();
  for (bool whole = true; whole && from != end;) {
    wchar_t piece[32 * kBlock];
    wchar_t* to = piece;
    whole = Decode(from, end, to, std::end(piece));
    wide.append(piece, to);
  }
}
