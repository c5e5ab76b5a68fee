// The functions of the border as declarations, for the framework that defines them.

#ifndef CEF_WRAPPER_EXPORTS_H_
#define CEF_WRAPPER_EXPORTS_H_

#include "cef/wrapper/function_table.h"
#include "include/cef_api_hash.h"
#include "include/internal/cef_export.h"

extern "C" {
#define CEF_FUNCTION(result, name, parameters) CEF_EXPORT result name parameters;
CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
}

// A table of the functions that are linked into the same program, for tests that need no loading.
inline CefFunctionTable CefLinkedFunctions() {
  CefFunctionTable table;
#define CEF_FUNCTION(result, name, parameters) table.name = &::name;
  CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
  return table;
}

#endif  // CEF_WRAPPER_EXPORTS_H_
