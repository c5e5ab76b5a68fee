// The structures of the API as classes that release what they hold.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_

#include "include/internal/cef_types.h"

// Traits of a structure whose text fields are `Fields`.
template <class Struct, cef_string_t Struct::*... Fields>
struct CefTextFieldTraits {
  typedef Struct struct_type;

  static void init(struct_type*) {}
  static void clear(struct_type* s) { (cef_string_utf16_clear(&(s->*Fields)), ...); }
  static void copy(const struct_type* src, struct_type* target) {
    struct_type result = *src;
    ((result.*Fields = target->*Fields), ...);
    (cef_string_utf16_set((src->*Fields).str, (src->*Fields).length, &(result.*Fields), 1), ...);
    *target = result;
  }
};
template <class Struct>
struct CefTextFieldTraits<Struct> {
  typedef Struct struct_type;

  static void init(struct_type*) {}
  static void clear(struct_type*) {}
  static void copy(const struct_type* src, struct_type* target) { *target = *src; }
};

// A structure that starts zeroed (and with its size field set, where that is checked), copies its
// texts and releases them.
template <class traits>
class CefStructBase : public traits::struct_type {
 public:
  typedef typename traits::struct_type struct_type;

  CefStructBase() { Init(); }
  CefStructBase(const CefStructBase& other) : struct_type() {
    Init();
    *this = other;
  }
  ~CefStructBase() { traits::clear(this); }

  // Releases everything and starts again.
  void Reset() {
    traits::clear(this);
    Init();
  }

  CefStructBase& operator=(const CefStructBase& other) {
    if (&other != this) traits::copy(&other, this);
    return *this;
  }

 private:
  void Init() {
    *static_cast<struct_type*>(this) = struct_type();
    traits::init(this);
  }
};

struct CefSettingsTraits
    : CefTextFieldTraits<cef_settings_t, &cef_settings_t::framework_dir_path,
                         &cef_settings_t::cache_path, &cef_settings_t::root_cache_path,
                         &cef_settings_t::user_data_path, &cef_settings_t::user_agent,
                         &cef_settings_t::log_file> {
  static void init(struct_type* s) { s->size = sizeof(*s); }
};
typedef CefStructBase<CefSettingsTraits> CefSettings;

struct CefBrowserSettingsTraits : CefTextFieldTraits<cef_browser_settings_t> {
  static void init(struct_type* s) { s->size = sizeof(*s); }
};
typedef CefStructBase<CefBrowserSettingsTraits> CefBrowserSettings;

typedef CefStructBase<CefTextFieldTraits<cef_cookie_t, &cef_cookie_t::name, &cef_cookie_t::value,
                                         &cef_cookie_t::domain, &cef_cookie_t::path>>
    CefCookie;

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
