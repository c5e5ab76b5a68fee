// A dictionary for the framework. Nothing here fills one: the class exists because signatures name
// it.

#ifndef CEF_INCLUDE_CEF_VALUES_H_
#define CEF_INCLUDE_CEF_VALUES_H_

#include "include/cef_base.h"

class CefDictionaryValue : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_VALUES_H_
