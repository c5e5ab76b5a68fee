// Strings as plain structures, and the functions that fill, compare, convert and release them.
//
// Client and framework each have their own copy of these functions. A string filled by one may be
// released by the other, also after the framework has been unloaded: copied text lives in memory
// of the C library's malloc.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_TYPES_H_

#include <cstddef>

#include "include/base/cef_basictypes.h"

extern "C" {

// `str` points to `length` units and may be null when there are none. `dtor` releases `str`; null
// for text that belongs to somebody else.
typedef struct _cef_string_wide_t {
  wchar_t* str;
  size_t length;
  void (*dtor)(wchar_t* str);
} cef_string_wide_t;

typedef struct _cef_string_utf8_t {
  char* str;
  size_t length;
  void (*dtor)(char* str);
} cef_string_utf8_t;

typedef struct _cef_string_utf16_t {
  char16* str;
  size_t length;
  void (*dtor)(char16* str);
} cef_string_utf16_t;

// Releases what `output` holds, then gives it `src_len` units of `src`: a copy with a closing zero,
// or with `copy` 0 a reference to the caller's memory. Empty input leaves it empty. `src` must not
// be the text of `output` itself. Returns 1, 0 only when memory is exhausted.
int cef_string_wide_set(const wchar_t* src, size_t src_len, cef_string_wide_t* output, int copy);
int cef_string_utf8_set(const char* src, size_t src_len, cef_string_utf8_t* output, int copy);
int cef_string_utf16_set(const char16* src, size_t src_len, cef_string_utf16_t* output, int copy);

// Releases what `str` holds and leaves it empty. Null is allowed.
void cef_string_wide_clear(cef_string_wide_t* str);
void cef_string_utf8_clear(cef_string_utf8_t* str);
void cef_string_utf16_clear(cef_string_utf16_t* str);

// Compares unit by unit, then by length: below 0, 0 or above 0.
int cef_string_utf16_cmp(const cef_string_utf16_t* left, const cef_string_utf16_t* right);

// Conversions into `output`, which is released first. Invalid input becomes U+FFFD in place, and
// the result is then 0 although the text has been stored; 1 otherwise.
int cef_string_utf8_to_utf16(const char* src, size_t src_len, cef_string_utf16_t* output);
int cef_string_utf16_to_utf8(const char16* src, size_t src_len, cef_string_utf8_t* output);
int cef_string_wide_to_utf16(const wchar_t* src, size_t src_len, cef_string_utf16_t* output);
int cef_string_utf16_to_wide(const char16* src, size_t src_len, cef_string_wide_t* output);
// `src` holds ASCII only.
int cef_string_ascii_to_utf16(const char* src, size_t src_len, cef_string_utf16_t* output);

// A string that the receiver frees.
typedef cef_string_utf16_t* cef_string_userfree_utf16_t;
cef_string_userfree_utf16_t cef_string_userfree_utf16_alloc();
void cef_string_userfree_utf16_free(cef_string_userfree_utf16_t str);

}  // extern "C"

#define cef_string_utf16_copy(src, src_len, output) cef_string_utf16_set(src, src_len, output, 1)

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_TYPES_H_
