// The switches of the browser's command line.

#ifndef CEF_INCLUDE_CEF_COMMAND_LINE_H_
#define CEF_INCLUDE_CEF_COMMAND_LINE_H_

#include "include/cef_base.h"

// Implemented by the framework. Switch names are given without dashes and in lower case. The object
// ignores changes once the browser has been started.
class CefCommandLine : public virtual CefBaseRefCounted {
 public:
  // The browser's own command line. Null before CefInitialize.
  static CefRefPtr<CefCommandLine> GetGlobalCommandLine();

  // Nothing happens for an empty name.
  virtual void AppendSwitch(const CefString& name) = 0;
  // Replaces an earlier value. Nothing happens when either is empty.
  virtual void AppendSwitchWithValue(const CefString& name, const CefString& value) = 0;
};

#endif  // CEF_INCLUDE_CEF_COMMAND_LINE_H_
