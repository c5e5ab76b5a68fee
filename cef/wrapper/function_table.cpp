#include "cef/wrapper/function_table.h"

namespace {
CefFunctionTable g_functions;
}

const CefFunctionTable& CefFunctions() { return g_functions; }

void CefSetFunctionTable(const CefFunctionTable* table) {
  g_functions = table ? *table : CefFunctionTable();
}
