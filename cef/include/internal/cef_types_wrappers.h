// The structures of the API as classes that release what they hold.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_

#include <cstring>

#include "include/internal/cef_types.h"

// Traits of a structure whose text fields are `Fields`.
template <class Struct, cef_string_t Struct::*... Fields>
struct CefTextFieldTraits {
  typedef Struct struct_type;

  static void init(struct_type*) {}
  static void clear(struct_type* s) { (cef_string_clear(&(s->*Fields)), ...); }
  // With `copy` false the texts stay those of `src`.
  static void set(const struct_type* src, struct_type* target, bool copy) {
    struct_type result = *src;
    ((result.*Fields = target->*Fields), ...);
    (cef_string_set((src->*Fields).str, (src->*Fields).length, &(result.*Fields), copy ? 1 : 0),
     ...);
    *target = result;
  }
};
template <class Struct>
struct CefTextFieldTraits<Struct> {
  typedef Struct struct_type;

  static void init(struct_type*) {}
  static void clear(struct_type*) {}
  static void set(const struct_type* src, struct_type* target, bool) { *target = *src; }
};

// A structure that starts zeroed (and with its size field set, where that is checked), copies its
// texts and releases them. Attached to another structure's memory it shares the texts.
template <class traits>
class CefStructBase : public traits::struct_type {
 public:
  typedef typename traits::struct_type struct_type;

  CefStructBase() { Init(); }
  CefStructBase(const CefStructBase& other) : struct_type() {
    Init();
    Set(other, true);
  }
  explicit CefStructBase(const struct_type& other) {
    Init();
    Set(other, true);
  }
  virtual ~CefStructBase() {
    if (!attached_to_) Clear(this);
  }

  // Releases everything and starts again.
  void Reset() {
    Clear(this);
    Init();
  }

  // Takes over the contents of `source`, which stays responsible for them.
  void AttachTo(struct_type& source) {
    Clear(this);
    *static_cast<struct_type*>(this) = source;
    attached_to_ = &source;
  }
  // Hands the contents to `target`, whose own are released.
  void DetachTo(struct_type& target) {
    if (attached_to_ != &target) Clear(&target);
    target = *static_cast<struct_type*>(this);
    attached_to_ = nullptr;
    Init();
  }

  void Set(const struct_type& source, bool copy) {
    if (&source != this) traits::set(&source, this, copy);
  }

  CefStructBase& operator=(const CefStructBase& other) { return *this = other.AsStruct(); }
  CefStructBase& operator=(const struct_type& other) {
    Set(other, true);
    return *this;
  }

 protected:
  void Init() {
    *static_cast<struct_type*>(this) = struct_type();
    attached_to_ = nullptr;
    traits::init(this);
  }
  static void Clear(struct_type* s) { traits::clear(s); }

  struct_type* attached_to_ = nullptr;

 private:
  const struct_type& AsStruct() const { return *this; }
};

struct CefSettingsTraits
    : CefTextFieldTraits<cef_settings_t, &cef_settings_t::browser_subprocess_path,
                         &cef_settings_t::framework_dir_path, &cef_settings_t::main_bundle_path,
                         &cef_settings_t::cache_path, &cef_settings_t::root_cache_path,
                         &cef_settings_t::user_data_path, &cef_settings_t::user_agent,
                         &cef_settings_t::product_version, &cef_settings_t::locale,
                         &cef_settings_t::log_file, &cef_settings_t::javascript_flags,
                         &cef_settings_t::resources_dir_path, &cef_settings_t::locales_dir_path,
                         &cef_settings_t::accept_language_list,
                         &cef_settings_t::application_client_id_for_file_scanning> {
  static void init(struct_type* s) { s->size = sizeof(*s); }
};
typedef CefStructBase<CefSettingsTraits> CefSettings;

struct CefRequestContextSettingsTraits
    : CefTextFieldTraits<cef_request_context_settings_t,
                         &cef_request_context_settings_t::cache_path,
                         &cef_request_context_settings_t::accept_language_list> {
  static void init(struct_type* s) { s->size = sizeof(*s); }
};
typedef CefStructBase<CefRequestContextSettingsTraits> CefRequestContextSettings;

struct CefBrowserSettingsTraits
    : CefTextFieldTraits<
          cef_browser_settings_t, &cef_browser_settings_t::standard_font_family,
          &cef_browser_settings_t::fixed_font_family, &cef_browser_settings_t::serif_font_family,
          &cef_browser_settings_t::sans_serif_font_family,
          &cef_browser_settings_t::cursive_font_family,
          &cef_browser_settings_t::fantasy_font_family, &cef_browser_settings_t::default_encoding,
          &cef_browser_settings_t::accept_language_list> {
  static void init(struct_type* s) { s->size = sizeof(*s); }
};
typedef CefStructBase<CefBrowserSettingsTraits> CefBrowserSettings;

typedef CefStructBase<CefTextFieldTraits<cef_cookie_t, &cef_cookie_t::name, &cef_cookie_t::value,
                                         &cef_cookie_t::domain, &cef_cookie_t::path>>
    CefCookie;

struct CefPopupFeaturesTraits : CefTextFieldTraits<cef_popup_features_t> {
  static void init(struct_type* s) {
    s->menuBarVisible = s->statusBarVisible = s->toolBarVisible = s->scrollbarsVisible = 1;
  }
};
typedef CefStructBase<CefPopupFeaturesTraits> CefPopupFeatures;

class CefPoint : public CefStructBase<CefTextFieldTraits<cef_point_t>> {
 public:
  CefPoint() = default;
  CefPoint(int x_value, int y_value) { Set(x_value, y_value); }

  using CefStructBase::Set;
  void Set(int x_value, int y_value) {
    x = x_value;
    y = y_value;
  }
};

class CefSize : public CefStructBase<CefTextFieldTraits<cef_size_t>> {
 public:
  CefSize() = default;
  CefSize(int width_value, int height_value) { Set(width_value, height_value); }

  using CefStructBase::Set;
  void Set(int width_value, int height_value) {
    width = width_value;
    height = height_value;
  }
  bool IsEmpty() const { return width <= 0 || height <= 0; }
};

class CefRect : public CefStructBase<CefTextFieldTraits<cef_rect_t>> {
 public:
  CefRect() = default;
  CefRect(int x_value, int y_value, int width_value, int height_value) {
    Set(x_value, y_value, width_value, height_value);
  }

  using CefStructBase::Set;
  void Set(int x_value, int y_value, int width_value, int height_value) {
    x = x_value;
    y = y_value;
    width = width_value;
    height = height_value;
  }
  bool IsEmpty() const { return width <= 0 || height <= 0; }
  // The right and lower borders are outside.
  bool Contains(int point_x, int point_y) const {
    return point_x >= x && point_x < x + width && point_y >= y && point_y < y + height;
  }
};

// A moment in UTC. The number forms are seconds since 1970.
class CefTime : public CefStructBase<CefTextFieldTraits<cef_time_t>> {
 public:
  CefTime() = default;
  explicit CefTime(const cef_time_t& time) : CefStructBase(time) {}
  explicit CefTime(time_t time) { SetTimeT(time); }
  explicit CefTime(double time) { SetDoubleT(time); }

  void SetTimeT(time_t time) { cef_time_from_timet(time, this); }
  // 0 when this is no valid moment.
  time_t GetTimeT() const {
    time_t time = 0;
    cef_time_to_timet(this, &time);
    return time;
  }
  void SetDoubleT(double time) { cef_time_from_doublet(time, this); }
  double GetDoubleT() const {
    double time = 0;
    cef_time_to_doublet(this, &time);
    return time;
  }
  void Now() { cef_time_now(this); }
};

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_WRAPPERS_H_
