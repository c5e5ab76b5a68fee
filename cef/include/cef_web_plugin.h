// A browser plug-in. Nothing here describes one: the class exists because signatures name it.

#ifndef CEF_INCLUDE_CEF_WEB_PLUGIN_H_
#define CEF_INCLUDE_CEF_WEB_PLUGIN_H_

#include "include/cef_base.h"

class CefWebPluginInfo : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_WEB_PLUGIN_H_
