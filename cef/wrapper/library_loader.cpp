#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>

#include "cef/wrapper/function_table.h"
#include "include/wrapper/cef_library_loader.h"
#include "libs/kxaccess/InstallPaths.h"

namespace {

void* g_libcef_handle = nullptr;

// Flushed at once: the process may be about to give up.
__attribute__((format(printf, 1, 2))) void Say(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vfprintf(stderr, format, args);
  va_end(args);
  fflush(stderr);
}

template <typename Function>
bool Find(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(dlsym(library, name));
  return function != nullptr;
}

bool FillTable(void* library, CefFunctionTable& table) {
#define CEF_FUNCTION(result, name, parameters) \
  if (!Find(library, #name, table.name)) return false;
  CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
  return true;
}

}  // namespace

int cef_load_library(const char* path) {
  if (g_libcef_handle) {
    Say("g_libcef_handle not null in cef_load_library\n");
    return 1;
  }
  void* library = dlopen(path, RTLD_LAZY | RTLD_LOCAL);
  if (!library) {
    Say("dlopen %s: %s\n", path, dlerror());
    return 0;
  }
  CefFunctionTable table;
  if (!FillTable(library, table)) {
    Say("libcef_init_pointers failed \n");
    dlclose(library);
    return 0;
  }
  CefSetFunctionTable(&table);
  g_libcef_handle = library;
  return 1;
}

int cef_unload_library() {
  if (!g_libcef_handle) return 0;
  CefSetFunctionTable(nullptr);
  const int result = dlclose(g_libcef_handle);
  g_libcef_handle = nullptr;
  if (result != 0) Say("dlclose: %s\n", dlerror());
  return result == 0;
}

CefScopedLibraryLoader::~CefScopedLibraryLoader() {
  if (loaded_) cef_unload_library();
}

bool CefScopedLibraryLoader::LoadInMain() {
  if (loaded_) return true;
  if (!cef_load_library(InstallPaths::kFrameworkLibrary)) {
    Say("Failed to load the CEF framework.\n");
    return false;
  }
  loaded_ = true;
  return true;
}
