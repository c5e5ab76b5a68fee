// A browser plug-in.

#ifndef CEF_INCLUDE_CEF_WEB_PLUGIN_H_
#define CEF_INCLUDE_CEF_WEB_PLUGIN_H_

#include "include/cef_base.h"

// Implemented by the framework.
class CefWebPluginInfo : public virtual CefBaseRefCounted {
 public:
  virtual CefString GetName() = 0;
  virtual CefString GetPath() = 0;
  virtual CefString GetVersion() = 0;
  virtual CefString GetDescription() = 0;
};

#endif  // CEF_INCLUDE_CEF_WEB_PLUGIN_H_
