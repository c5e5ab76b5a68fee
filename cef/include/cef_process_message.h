// A message between the browser and a renderer process. Nothing here uses it: the class exists
// because signatures name it.

#ifndef CEF_INCLUDE_CEF_PROCESS_MESSAGE_H_
#define CEF_INCLUDE_CEF_PROCESS_MESSAGE_H_

#include "include/cef_base.h"

typedef cef_process_id_t CefProcessId;

class CefProcessMessage : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_PROCESS_MESSAGE_H_
