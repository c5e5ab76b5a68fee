// Text encodings.

#ifndef CEF_INCLUDE_CEF_PARSER_H_
#define CEF_INCLUDE_CEF_PARSER_H_

#include <cstddef>

#include "include/cef_base.h"

// Base64 with the standard alphabet and padding, without line breaks. Empty for no data.
CefString CefBase64Encode(const void* data, size_t data_size);

// Percent-encodes the UTF-8 form of `text`: letters, digits and !'()*-._~ stay, everything else
// becomes %XX in upper case. With `use_plus` a blank becomes a plus sign instead of %20.
CefString CefURIEncode(const CefString& text, bool use_plus);

#endif  // CEF_INCLUDE_CEF_PARSER_H_
