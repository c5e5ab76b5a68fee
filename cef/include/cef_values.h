// Containers of values for the framework. Nothing here fills one: the classes exist because
// signatures name them.

#ifndef CEF_INCLUDE_CEF_VALUES_H_
#define CEF_INCLUDE_CEF_VALUES_H_

#include "include/cef_base.h"

class CefBinaryValue : public virtual CefBaseRefCounted {};
class CefDictionaryValue : public virtual CefBaseRefCounted {};
class CefListValue : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_VALUES_H_
