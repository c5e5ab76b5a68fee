// What happens in a renderer process. Nothing here uses it: the class exists because signatures
// name it.

#ifndef CEF_INCLUDE_CEF_RENDER_PROCESS_HANDLER_H_
#define CEF_INCLUDE_CEF_RENDER_PROCESS_HANDLER_H_

#include "include/cef_base.h"

class CefRenderProcessHandler : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_RENDER_PROCESS_HANDLER_H_
