// The string type of the API: UTF-16.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_H_

#include "include/internal/cef_string_wrappers.h"

typedef cef_string_utf16_t cef_string_t;
typedef cef_string_userfree_utf16_t cef_string_userfree_t;
typedef CefStringUTF16 CefString;

#define cef_string_set cef_string_utf16_set
#define cef_string_copy cef_string_utf16_copy
#define cef_string_clear cef_string_utf16_clear
#define cef_string_from_utf8 cef_string_utf8_to_utf16
#define cef_string_to_utf8 cef_string_utf16_to_utf8
#define cef_string_from_wide cef_string_wide_to_utf16
#define cef_string_to_wide cef_string_utf16_to_wide
#define cef_string_from_ascii cef_string_ascii_to_utf16
#define cef_string_userfree_alloc cef_string_userfree_utf16_alloc
#define cef_string_userfree_free cef_string_userfree_utf16_free

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_H_
