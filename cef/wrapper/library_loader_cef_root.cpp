// The loader over a genuine CEF distribution: its own function table, but the installed place and
// the messages of this product. Takes the place of the distribution's loader source.

#include <dlfcn.h>

#include <cstdio>

#include "include/wrapper/cef_library_loader.h"
#include "libs/kxaccess/InstallPaths.h"

namespace {

bool g_open = false;

void Say(const char* text) {
  fputs(text, stderr);
  fflush(stderr);
}

// The distribution's cef_load_library says the dlopen message itself, but takes an open library
// for a failure and has another text for a missing function.
bool LoadFramework(const char* path) {
  if (g_open) {
    Say("g_libcef_handle not null in cef_load_library\n");
    return true;
  }
  void* probe = dlopen(path, RTLD_LAZY | RTLD_LOCAL);
  g_open = cef_load_library(path) != 0;
  fflush(stderr);
  if (!g_open && probe) Say("libcef_init_pointers failed \n");
  if (probe) dlclose(probe);
  return g_open;
}

}  // namespace

CefScopedLibraryLoader::CefScopedLibraryLoader() : loaded_(false) {}

CefScopedLibraryLoader::~CefScopedLibraryLoader() {
  if (loaded_ && g_open) {
    g_open = false;
    cef_unload_library();
  }
}

// Programs and helpers load the same file.
bool CefScopedLibraryLoader::Load(bool /*helper*/) {
  if (loaded_) return true;
  loaded_ = LoadFramework(InstallPaths::kFrameworkLibrary);
  if (!loaded_) Say("Failed to load the CEF framework.\n");
  return loaded_;
}
