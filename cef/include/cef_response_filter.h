// Rewriting of response bodies. Nothing here uses it: the class exists because signatures name it.

#ifndef CEF_INCLUDE_CEF_RESPONSE_FILTER_H_
#define CEF_INCLUDE_CEF_RESPONSE_FILTER_H_

#include "include/cef_base.h"

class CefResponseFilter : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_RESPONSE_FILTER_H_
