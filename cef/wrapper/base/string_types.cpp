#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "include/internal/cef_string_types.h"

namespace {

// The text is released by the C library's own function, which stays in place when the side that
// allocated it is unloaded.
template <typename Unit>
void (*ReleaseFunction())(Unit*) {
  return reinterpret_cast<void (*)(Unit*)>(&free);
}

template <typename String>
void Clear(String* string) {
  if (!string) return;
  if (string->dtor && string->str) string->dtor(string->str);
  *string = String();
}

template <typename Unit, typename String>
int Set(const Unit* src, size_t length, String* output, int copy) {
  Clear(output);
  if (!src || length == 0) return 1;
  if (!copy) {
    output->str = const_cast<Unit*>(src);
    output->length = length;
    return 1;
  }
  Unit* text = static_cast<Unit*>(malloc((length + 1) * sizeof(Unit)));
  if (!text) return 0;
  memcpy(text, src, length * sizeof(Unit));
  text[length] = 0;
  output->str = text;
  output->length = length;
  output->dtor = ReleaseFunction<Unit>();
  return 1;
}

}  // namespace

int cef_string_wide_set(const wchar_t* src, size_t src_len, cef_string_wide_t* output, int copy) {
  return Set(src, src_len, output, copy);
}

int cef_string_utf8_set(const char* src, size_t src_len, cef_string_utf8_t* output, int copy) {
  return Set(src, src_len, output, copy);
}

int cef_string_utf16_set(const char16* src, size_t src_len, cef_string_utf16_t* output, int copy) {
  return Set(src, src_len, output, copy);
}

void cef_string_wide_clear(cef_string_wide_t* str) { Clear(str); }

void cef_string_utf8_clear(cef_string_utf8_t* str) { Clear(str); }

void cef_string_utf16_clear(cef_string_utf16_t* str) { Clear(str); }

int cef_string_utf16_cmp(const cef_string_utf16_t* left, const cef_string_utf16_t* right) {
  const size_t common = std::min(left->length, right->length);
  for (size_t i = 0; i < common; ++i) {
    if (left->str[i] != right->str[i]) return left->str[i] < right->str[i] ? -1 : 1;
  }
  if (left->length == right->length) return 0;
  return left->length < right->length ? -1 : 1;
}

cef_string_userfree_utf16_t cef_string_userfree_utf16_alloc() {
  return static_cast<cef_string_utf16_t*>(calloc(1, sizeof(cef_string_utf16_t)));
}

void cef_string_userfree_utf16_free(cef_string_userfree_utf16_t str) {
  cef_string_utf16_clear(str);
  free(str);
}
