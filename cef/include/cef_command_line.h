// A command line: a program, switches, arguments.

#ifndef CEF_INCLUDE_CEF_COMMAND_LINE_H_
#define CEF_INCLUDE_CEF_COMMAND_LINE_H_

#include <map>
#include <vector>

#include "include/cef_base.h"

// Implemented by the framework. Switch names are given without dashes and in lower case. An object
// that is read-only ignores changes.
class CefCommandLine : public virtual CefBaseRefCounted {
 public:
  typedef std::vector<CefString> ArgumentList;
  typedef std::map<CefString, CefString> SwitchMap;

  // A new, empty one; null when the framework is not loaded.
  static CefRefPtr<CefCommandLine> CreateCommandLine();

  // The browser's own command line, read-only. Null before CefInitialize.
  static CefRefPtr<CefCommandLine> GetGlobalCommandLine();

  virtual bool IsValid() = 0;
  virtual bool IsReadOnly() = 0;
  // A writable copy.
  virtual CefRefPtr<CefCommandLine> Copy() = 0;

  virtual void InitFromArgv(int argc, const char* const* argv) = 0;
  virtual void Reset() = 0;
  virtual void GetArgv(std::vector<CefString>& argv) = 0;
  virtual CefString GetCommandLineString() = 0;

  virtual CefString GetProgram() = 0;
  virtual void SetProgram(const CefString& program) = 0;

  virtual bool HasSwitches() = 0;
  // False for an empty name.
  virtual bool HasSwitch(const CefString& name) = 0;
  // Empty when the switch is missing or has no value.
  virtual CefString GetSwitchValue(const CefString& name) = 0;
  // Replaces the contents of `switches`.
  virtual void GetSwitches(SwitchMap& switches) = 0;
  // Nothing happens for an empty name.
  virtual void AppendSwitch(const CefString& name) = 0;
  // Replaces an earlier value. Nothing happens when either is empty.
  virtual void AppendSwitchWithValue(const CefString& name, const CefString& value) = 0;

  virtual bool HasArguments() = 0;
  // Replaces the contents of `arguments`.
  virtual void GetArguments(ArgumentList& arguments) = 0;
  virtual void AppendArgument(const CefString& argument) = 0;
};

#endif  // CEF_INCLUDE_CEF_COMMAND_LINE_H_
