// The structures of the API. Zero in a field means its default. The text fields are released by the
// wrapper classes in cef_types_wrappers.h.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_H_

#include "include/base/cef_basictypes.h"
#include "include/internal/cef_string.h"
#include "include/internal/cef_time.h"
#include "include/internal/cef_types_enums.h"
#include "include/internal/cef_types_linux.h"

// 0xAARRGGBB.
typedef uint32 cef_color_t;

extern "C" {

// What CefInitialize is told.
typedef struct _cef_settings_t {
  size_t size;  // Sizeof(cef_settings_t), or CefInitialize refuses.
  int no_sandbox;
  cef_string_t browser_subprocess_path;
  cef_string_t framework_dir_path;  // Where the framework finds its own files.
  cef_string_t main_bundle_path;
  int multi_threaded_message_loop;
  int external_message_pump;
  int windowless_rendering_enabled;
  int command_line_args_disabled;
  cef_string_t cache_path;       // The profile; empty keeps it in memory.
  cef_string_t root_cache_path;  // Cache_path equals it or lies below it.
  cef_string_t user_data_path;
  int persist_session_cookies;
  int persist_user_preferences;
  cef_string_t user_agent;  // Sent as it is; empty for the framework's own.
  cef_string_t product_version;
  cef_string_t locale;
  cef_string_t log_file;
  cef_log_severity_t log_severity;
  cef_string_t javascript_flags;
  cef_string_t resources_dir_path;
  cef_string_t locales_dir_path;
  int pack_loading_disabled;
  int remote_debugging_port;  // 1024 to 65535, otherwise none.
  int uncaught_exception_stack_size;
  int ignore_certificate_errors;
  cef_color_t background_color;
  cef_string_t accept_language_list;
  cef_string_t application_client_id_for_file_scanning;
} cef_settings_t;

// What a request context of its own is told.
typedef struct _cef_request_context_settings_t {
  size_t size;
  cef_string_t cache_path;
  int persist_session_cookies;
  int persist_user_preferences;
  int ignore_certificate_errors;
  cef_string_t accept_language_list;
} cef_request_context_settings_t;

// What a new browser is told.
typedef struct _cef_browser_settings_t {
  size_t size;
  int windowless_frame_rate;
  cef_string_t standard_font_family;
  cef_string_t fixed_font_family;
  cef_string_t serif_font_family;
  cef_string_t sans_serif_font_family;
  cef_string_t cursive_font_family;
  cef_string_t fantasy_font_family;
  int default_font_size;
  int default_fixed_font_size;
  int minimum_font_size;
  int minimum_logical_font_size;
  cef_string_t default_encoding;
  cef_state_t remote_fonts;
  cef_state_t javascript;
  cef_state_t javascript_close_windows;
  cef_state_t javascript_access_clipboard;
  cef_state_t javascript_dom_paste;
  cef_state_t plugins;
  cef_state_t universal_access_from_file_urls;
  cef_state_t file_access_from_file_urls;
  cef_state_t web_security;
  cef_state_t image_loading;
  cef_state_t image_shrink_standalone_to_fit;
  cef_state_t text_area_resize;
  cef_state_t tab_to_links;
  cef_state_t local_storage;
  cef_state_t databases;
  cef_state_t application_cache;
  cef_state_t webgl;
  cef_color_t background_color;
  cef_string_t accept_language_list;
} cef_browser_settings_t;

// One cookie.
typedef struct _cef_cookie_t {
  cef_string_t name;
  cef_string_t value;
  cef_string_t domain;  // Empty for a cookie of one host.
  cef_string_t path;
  int secure;
  int httponly;
  cef_time_t creation;
  cef_time_t last_access;
  int has_expires;  // 0 for a session cookie.
  cef_time_t expires;
} cef_cookie_t;

// What a page asks of a window that it opens.
typedef struct _cef_popup_features_t {
  int x;
  int xSet;
  int y;
  int ySet;
  int width;
  int widthSet;
  int height;
  int heightSet;
  int menuBarVisible;
  int statusBarVisible;
  int toolBarVisible;
  int scrollbarsVisible;
} cef_popup_features_t;

// Geometry, in device independent pixels.
typedef struct _cef_point_t {
  int x;
  int y;
} cef_point_t;

typedef struct _cef_rect_t {
  int x;
  int y;
  int width;
  int height;
} cef_rect_t;

typedef struct _cef_size_t {
  int width;
  int height;
} cef_size_t;

}  // extern "C"

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
