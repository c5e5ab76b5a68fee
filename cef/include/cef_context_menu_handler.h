// The browser's context menu. Nothing here uses it: the class exists because signatures name it.

#ifndef CEF_INCLUDE_CEF_CONTEXT_MENU_HANDLER_H_
#define CEF_INCLUDE_CEF_CONTEXT_MENU_HANDLER_H_

#include "include/cef_base.h"

class CefContextMenuHandler : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_CONTEXT_MENU_HANDLER_H_
