#include <cstring>
#include <string>

#include "include/cef_parser.h"

CefString CefBase64Encode(const void* data, size_t data_size) {
  static const char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (!data) return CefString();
  const unsigned char* bytes = static_cast<const unsigned char*>(data);
  std::string text;
  text.reserve((data_size + 2) / 3 * 4);
  for (size_t at = 0; at < data_size; at += 3) {
    const size_t count = data_size - at < 3 ? data_size - at : 3;
    unsigned group = 0;
    for (size_t i = 0; i < 3; ++i) group = group << 8 | (i < count ? bytes[at + i] : 0u);
    for (size_t i = 0; i < 4; ++i) {
      text += i <= count ? kAlphabet[group >> (18 - 6 * i) & 0x3F] : '=';
    }
  }
  return text;
}

CefString CefURIEncode(const CefString& text, bool use_plus) {
  static const char kKept[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!'()*-._~";
  static const char kDigits[] = "0123456789ABCDEF";
  std::string result;
  for (const char c : text.ToString()) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (c != '\0' && strchr(kKept, c)) {
      result += c;
    } else if (c == ' ' && use_plus) {
      result += '+';
    } else {
      result += '%';
      result += kDigits[byte >> 4];
      result += kDigits[byte & 0x0F];
    }
  }
  return result;
}
