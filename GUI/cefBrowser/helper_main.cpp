// The program of genuine CEF's child processes (pages, network, graphics). CEF finds it in bundles
// named after the main program and passes everything by arguments.

#include "include/cef_app.h"
#include "include/wrapper/cef_library_loader.h"

int main(int argc, char** argv) {
  CefScopedLibraryLoader framework;
  if (!framework.LoadInHelper()) return 1;
  return CefExecuteProcess(CefMainArgs(argc, argv), nullptr, nullptr);
}
