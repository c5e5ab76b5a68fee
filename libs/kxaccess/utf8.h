// UTF-8 and wide text. Wide text holds one 32-bit code point per character. The encoding is the
// original one of up to six bytes: surrogates and values above 0x10FFFF pass in both directions.
// There is no replacement character; each operation says where it skips or stops. Nothing here
// logs, locks or depends on the locale.

#ifndef LIBS_KXACCESS_UTF8_H_
#define LIBS_KXACCESS_UTF8_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

// Writes code points into a buffer of the caller's.
class _dcfUtf8RefOut {
 public:
  // Results of Put.
  enum { kWritten = 0, kNoRoom = 1, kNotEncodable = 2 };

  // `end` is exclusive. The buffer must outlive this object.
  _dcfUtf8RefOut(char* begin, char* end) : m_pos(begin), m_end(end) {}

  // Appends the UTF-8 form of `codePoint`. Writes nothing and stays in place when the whole
  // sequence does not fit (kNoRoom) or the top bit is set (kNotEncodable). No terminator is
  // written.
  int Put(std::uint32_t codePoint);

  // Where the next byte goes.
  char* position() const { return m_pos; }

 private:
  char* m_pos;
  char* m_end;
};

// Reads code points from bytes of the caller's.
class _dcfUtf8RefIn {
 public:
  // `end` is exclusive. An end before the start, a null one included, means that there is no bound:
  // the bytes end at a NUL, and reading on after Get delivered it is the caller's mistake.
  _dcfUtf8RefIn(const char* begin, const char* end)
      : m_pos(begin), m_end(end), m_bounded(!(end < begin)) {}

  // Takes one code point. False at the end of bounded bytes, and for a malformed, cut or overlong
  // sequence; `codePoint` is then of no use. The cursor then stands behind the bytes already taken:
  // on the byte that should have continued the sequence, if that was the fault.
  bool Get(std::uint32_t& codePoint);

  // The next byte to be read.
  const char* position() const { return m_pos; }

 private:
  const char* m_pos;
  const char* m_end;
  bool m_bounded;
};

// Owns a converted text, always terminated. Two instantiations exist:
//   _dcfUtfString<char, 1, 4, 6>     holds the UTF-8 form of a wide text
//   _dcfUtfString<wchar_t, 4, 1, 1>  holds the wide form of a UTF-8 text
// The parameters: the unit held, its width and the source unit's width in bytes, and how many units
// one source unit can give. Throws std::bad_alloc when memory runs out.
template <typename Unit, int kUnitBytes, int kSourceBytes, int kUnitsPerSource>
class _dcfUtfString {
 public:
  static_assert(sizeof(Unit) == kUnitBytes, "the unit has another width");
  using Source = std::conditional_t<kSourceBytes == 1, char, wchar_t>;
  static_assert(sizeof(Source) == kSourceBytes, "the source has another width");

  // Empty, but with a terminator.
  _dcfUtfString() { SetString(nullptr); }
  explicit _dcfUtfString(const Source* text) { SetString(text); }
  _dcfUtfString(const _dcfUtfString&) = delete;
  _dcfUtfString& operator=(const _dcfUtfString&) = delete;
  ~_dcfUtfString() { delete[] m_data; }

  // Replaces the text by the converted form of `text`, read up to its NUL; null counts as empty.
  // Towards UTF-8, characters that cannot be encoded are left out. Towards wide text the conversion
  // stops at the first malformed sequence and keeps what came before it.
  void SetString(const Source* text);

  // The converted text, terminated; valid until the next SetString.
  const Unit* data() const { return m_data; }
  // Its size in units, the terminator included.
  size_t size() const { return m_used; }
  // The room in units. It never shrinks.
  size_t capacity() const { return m_capacity; }

 private:
  // Makes room for `units`: exactly that the first time, then by doubling. Keeps what is held.
  void Reserve(size_t units);

  Unit* m_data = nullptr;
  size_t m_used = 0;
  size_t m_capacity = 0;
};

template <>
void _dcfUtfString<char, 1, 4, 6>::SetString(const wchar_t* text);
template <>
void _dcfUtfString<wchar_t, 4, 1, 1>::SetString(const char* text);
extern template class _dcfUtfString<char, 1, 4, 6>;
extern template class _dcfUtfString<wchar_t, 4, 1, 1>;

// The everyday forms of the two conversions, with the same rules: both end at the first NUL.
std::string WideToUtf8(const std::wstring& text);
std::wstring Utf8ToWide(const std::string& text);

// Appends the wide form of `text`, by the same rules.
void AppendWide(std::string_view text, std::wstring& wide);

#endif  // LIBS_KXACCESS_UTF8_H_
