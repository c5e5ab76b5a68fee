// The structures of the API. Zero in a field means its default. The text fields are released by the
// wrapper classes in cef_types_wrappers.h.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_H_

#include "include/base/cef_basictypes.h"
#include "include/internal/cef_string.h"
#include "include/internal/cef_types_enums.h"

extern "C" {

// What CefInitialize is told.
typedef struct _cef_settings_t {
  size_t size;  // Sizeof(cef_settings_t), or CefInitialize refuses.
  int no_sandbox;
  cef_string_t framework_dir_path;  // Where the framework finds its own files.
  cef_string_t cache_path;          // The profile; empty keeps it in memory.
  cef_string_t root_cache_path;     // Cache_path equals it or lies below it.
  cef_string_t user_data_path;
  cef_string_t user_agent;  // Sent as it is; empty for the framework's own.
  cef_string_t log_file;
  cef_log_severity_t log_severity;
  int remote_debugging_port;  // 1024 to 65535, otherwise none.
  int uncaught_exception_stack_size;
} cef_settings_t;

// What a new browser is told.
typedef struct _cef_browser_settings_t {
  size_t size;
  cef_state_t webgl;
} cef_browser_settings_t;

// One cookie, for the session.
typedef struct _cef_cookie_t {
  cef_string_t name;
  cef_string_t value;
  cef_string_t domain;  // Empty for a cookie of one host.
  cef_string_t path;
  int secure;
  int httponly;
} cef_cookie_t;

}  // extern "C"

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_H_
