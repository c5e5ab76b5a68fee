// Loading of the browser framework.

#ifndef CEF_INCLUDE_WRAPPER_CEF_LIBRARY_LOADER_H_
#define CEF_INCLUDE_WRAPPER_CEF_LIBRARY_LOADER_H_

#include "include/base/cef_macros.h"

extern "C" {

// Opens the framework library at `path` and looks up every function of its table. Messages go to
// standard error. Returns 1 when the functions can be called, also when a library is open already;
// 0 when the file cannot be opened or lacks a function.
int cef_load_library(const char* path);

// Closes the library. Returns 1 when one was open and could be closed.
int cef_unload_library();

}  // extern "C"

// Loads the installed framework and closes it at the end of its own life. Its constructor does
// nothing, so it may be a global object.
class CefScopedLibraryLoader {
 public:
  CefScopedLibraryLoader() = default;
  ~CefScopedLibraryLoader();

  // Loads the framework from its installed place, for the main process. True when it is loaded,
  // also when it was before. A failure is reported on standard error. Not thread safe.
  bool LoadInMain();

 private:
  bool loaded_ = false;

  DISALLOW_COPY_AND_ASSIGN(CefScopedLibraryLoader);
};

#endif  // CEF_INCLUDE_WRAPPER_CEF_LIBRARY_LOADER_H_
