// base::string16: a standard string of UTF-16 code units.

#ifndef CEF_INCLUDE_BASE_CEF_STRING16_H_
#define CEF_INCLUDE_BASE_CEF_STRING16_H_

#include <algorithm>
#include <cstring>
#include <ios>
#include <string>

#include "include/base/cef_basictypes.h"

namespace base {

// The standard library promises character traits for its own character types only.
struct string16_char_traits {
  typedef char16 char_type;
  typedef int int_type;
  typedef std::mbstate_t state_type;
  typedef std::streamoff off_type;
  typedef std::fpos<state_type> pos_type;

  static void assign(char_type& to, const char_type& from) { to = from; }
  static bool eq(const char_type& a, const char_type& b) { return a == b; }
  static bool lt(const char_type& a, const char_type& b) { return a < b; }

  static int compare(const char_type* a, const char_type* b, size_t count) {
    const auto where = std::mismatch(a, a + count, b);
    if (where.first == a + count) return 0;
    return *where.first < *where.second ? -1 : 1;
  }
  static size_t length(const char_type* text) {
    const char_type* end = text;
    while (*end != 0) ++end;
    return static_cast<size_t>(end - text);
  }
  static const char_type* find(const char_type* text, size_t count, const char_type& wanted) {
    const char_type* found = std::find(text, text + count, wanted);
    return found == text + count ? nullptr : found;
  }
  static char_type* move(char_type* to, const char_type* from, size_t count) {
    if (count != 0) std::memmove(to, from, count * sizeof(char_type));
    return to;
  }
  static char_type* copy(char_type* to, const char_type* from, size_t count) {
    return move(to, from, count);
  }
  static char_type* assign(char_type* to, size_t count, char_type unit) {
    std::fill_n(to, count, unit);
    return to;
  }

  static int_type eof() { return -1; }
  static int_type not_eof(const int_type& value) { return value == eof() ? 0 : value; }
  static char_type to_char_type(const int_type& value) { return static_cast<char_type>(value); }
  static int_type to_int_type(const char_type& unit) { return unit; }
  static bool eq_int_type(const int_type& a, const int_type& b) { return a == b; }
};

typedef std::basic_string<char16, string16_char_traits> string16;

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_STRING16_H_
