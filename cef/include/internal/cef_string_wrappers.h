// The string class of the API.

#ifndef CEF_INCLUDE_INTERNAL_CEF_STRING_WRAPPERS_H_
#define CEF_INCLUDE_INTERNAL_CEF_STRING_WRAPPERS_H_

#include <cstring>
#include <cwchar>
#include <string>

#include "include/base/cef_string16.h"
#include "include/internal/cef_string_types.h"

// What CefStringBase needs to know about UTF-16 text.
struct CefStringTraitsUTF16 {
  typedef char16 char_type;
  typedef cef_string_utf16_t struct_type;
  typedef cef_string_userfree_utf16_t userfree_struct_type;

  static void clear(struct_type* s) { cef_string_utf16_clear(s); }
  static bool set(const char_type* src, size_t length, struct_type* s, bool copy) {
    return cef_string_utf16_set(src, length, s, copy ? 1 : 0) != 0;
  }
  static int compare(const struct_type* a, const struct_type* b) {
    return cef_string_utf16_cmp(a, b);
  }
  static userfree_struct_type userfree_alloc() { return cef_string_userfree_utf16_alloc(); }
  static void userfree_free(userfree_struct_type s) { cef_string_userfree_utf16_free(s); }

  static bool from_utf8(const char* src, size_t length, struct_type* s) {
    return cef_string_utf8_to_utf16(src, length, s) != 0;
  }
  static bool from_ascii(const char* src, size_t length, struct_type* s) {
    return cef_string_ascii_to_utf16(src, length, s) != 0;
  }
  static bool from_wide(const wchar_t* src, size_t length, struct_type* s) {
    return cef_string_wide_to_utf16(src, length, s) != 0;
  }
  static std::string to_utf8(const struct_type* s) {
    cef_string_utf8_t text = {};
    cef_string_utf16_to_utf8(s->str, s->length, &text);
    const std::string result(text.str ? text.str : "", text.length);
    cef_string_utf8_clear(&text);
    return result;
  }
  static std::wstring to_wide(const struct_type* s) {
    cef_string_wide_t text = {};
    cef_string_utf16_to_wide(s->str, s->length, &text);
    const std::wstring result(text.str ? text.str : L"", text.length);
    cef_string_wide_clear(&text);
    return result;
  }
};

// A string that owns its text, or one that is attached to a structure elsewhere:
// CefString(&settings.log_file) = "x" writes into the field, which the structure's owner releases.
// Narrow text is UTF-8, wide text UTF-32. Null pointers count as empty text. Order and equality go
// by code units.
template <class traits>
class CefStringBase {
 public:
  typedef typename traits::char_type char_type;
  typedef typename traits::struct_type struct_type;
  typedef typename traits::userfree_struct_type userfree_struct_type;

  CefStringBase() = default;
  CefStringBase(const CefStringBase& str) { *this = str; }
  CefStringBase(const std::string& src) { FromString(src); }
  CefStringBase(const char* src) { *this = src; }
  CefStringBase(const std::wstring& src) { FromWString(src); }
  CefStringBase(const wchar_t* src) { *this = src; }
  CefStringBase(const base::string16& src) { FromString16(src); }
  CefStringBase(const char16* src) { *this = src; }
  // With `copy` false the text stays the caller's and must outlive this object.
  CefStringBase(const char_type* src, size_t src_len, bool copy) { FromString(src, src_len, copy); }
  // Attaches without owning; null gives an empty string.
  CefStringBase(const struct_type* src) {
    if (src) Attach(const_cast<struct_type*>(src), false);
  }

  virtual ~CefStringBase() { ClearAndFree(); }

  // Null when nothing was ever set.
  const char_type* c_str() const { return string_ ? string_->str : nullptr; }
  size_t length() const { return string_ ? string_->length : 0; }
  size_t size() const { return length(); }
  bool empty() const { return length() == 0; }

  int compare(const CefStringBase& str) const {
    static const struct_type kEmpty = {};
    return traits::compare(string_ ? string_ : &kEmpty, str.string_ ? str.string_ : &kEmpty);
  }

  void clear() {
    if (string_) traits::clear(string_);
  }
  struct_type* GetWritableStruct() {
    AllocIfNeeded();
    return string_;
  }

  // Gives up the structure; its text is released when it was owned.
  void ClearAndFree() {
    if (owner_) traits::userfree_free(string_);
    string_ = nullptr;
    owner_ = false;
  }
  // `str` comes from traits::userfree_alloc when `owner` is true.
  void Attach(struct_type* str, bool owner) {
    ClearAndFree();
    string_ = str;
    owner_ = owner;
  }
  // Set the text; empty input clears it. False when the input was not valid text.
  bool FromString(const char_type* src, size_t src_len, bool copy) {
    if (!src || src_len == 0) return ClearForEmpty();
    return traits::set(src, src_len, GetWritableStruct(), copy);
  }
  bool FromASCII(const char* src) {
    const size_t length = src ? std::strlen(src) : 0;
    if (length == 0) return ClearForEmpty();
    return traits::from_ascii(src, length, GetWritableStruct());
  }
  bool FromString(const std::string& src) {
    if (src.empty()) return ClearForEmpty();
    return traits::from_utf8(src.data(), src.length(), GetWritableStruct());
  }
  bool FromWString(const std::wstring& src) {
    if (src.empty()) return ClearForEmpty();
    return traits::from_wide(src.data(), src.length(), GetWritableStruct());
  }
  bool FromString16(const base::string16& src) {
    return FromString(src.data(), src.length(), true);
  }

  // UTF-8.
  std::string ToString() const { return empty() ? std::string() : traits::to_utf8(string_); }
  std::wstring ToWString() const { return empty() ? std::wstring() : traits::to_wide(string_); }
  base::string16 ToString16() const {
    return empty() ? base::string16() : base::string16(c_str(), length());
  }

  bool operator<(const CefStringBase& str) const { return compare(str) < 0; }
  bool operator==(const CefStringBase& str) const { return compare(str) == 0; }
  bool operator!=(const CefStringBase& str) const { return compare(str) != 0; }

  // An attached string stays attached: the new text goes into the structure.
  CefStringBase& operator=(const CefStringBase& str) {
    if (string_ && string_ == str.string_) return *this;
    FromString(str.c_str(), str.length(), true);
    return *this;
  }
  operator std::string() const { return ToString(); }
  CefStringBase& operator=(const std::string& str) {
    FromString(str);
    return *this;
  }
  CefStringBase& operator=(const char* str) {
    FromString(str ? std::string(str) : std::string());
    return *this;
  }
  operator std::wstring() const { return ToWString(); }
  CefStringBase& operator=(const std::wstring& str) {
    FromWString(str);
    return *this;
  }
  CefStringBase& operator=(const wchar_t* str) {
    FromWString(str ? std::wstring(str) : std::wstring());
    return *this;
  }
  operator base::string16() const { return ToString16(); }
  CefStringBase& operator=(const base::string16& str) {
    FromString16(str);
    return *this;
  }
  CefStringBase& operator=(const char16* str) {
    FromString16(str ? base::string16(str) : base::string16());
    return *this;
  }

 private:
  void AllocIfNeeded() {
    if (string_) return;
    string_ = traits::userfree_alloc();
    owner_ = true;
  }
  bool ClearForEmpty() {
    clear();
    return true;
  }

  struct_type* string_ = nullptr;
  bool owner_ = false;
};

typedef CefStringBase<CefStringTraitsUTF16> CefStringUTF16;

#endif  // CEF_INCLUDE_INTERNAL_CEF_STRING_WRAPPERS_H_
