// Results of searching in a page. Nothing here uses it: the class exists because signatures name
// it.

#ifndef CEF_INCLUDE_CEF_FIND_HANDLER_H_
#define CEF_INCLUDE_CEF_FIND_HANDLER_H_

#include "include/cef_base.h"

class CefFindHandler : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_FIND_HANDLER_H_
