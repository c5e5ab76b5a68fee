// The string type of the API: UTF-16.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_H_

#include "include/internal/cef_string_wrappers.h"

typedef cef_string_utf16_t cef_string_t;
typedef CefStringUTF16 CefString;

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_H_
