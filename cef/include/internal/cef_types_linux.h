// Types that differ between systems.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TYPES_LINUX_H_
#define CEF_INCLUDE_INTERNAL_CEF_TYPES_LINUX_H_

#include "include/internal/cef_string.h"

// As wide as on macOS, where it is a view: what takes a window handle there takes it here as well.
// It carries the number of the X11 window.
#define cef_window_handle_t void*
#define cef_cursor_handle_t void*
#define cef_event_handle_t void*
#define kNullWindowHandle NULL

extern "C" {

typedef struct _cef_main_args_t {
  int argc;
  char** argv;
} cef_main_args_t;

// Place and parent of a browser window; all zero lets the framework choose.
typedef struct _cef_window_info_t {
  cef_string_t window_name;
  unsigned int x;
  unsigned int y;
  unsigned int width;
  unsigned int height;
  cef_window_handle_t parent_window;
  int windowless_rendering_enabled;
  int shared_texture_enabled;
  int external_begin_frame_enabled;
  cef_window_handle_t window;
} cef_window_info_t;

}  // extern "C"

#endif  // CEF_INCLUDE_INTERNAL_CEF_TYPES_LINUX_H_
