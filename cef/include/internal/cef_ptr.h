// The pointer types of the API.

#ifndef CEF_INCLUDE_INTERNAL_CEF_PTR_H_
#define CEF_INCLUDE_INTERNAL_CEF_PTR_H_

#include "include/base/cef_ref_counted.h"

template <class T>
using CefRefPtr = scoped_refptr<T>;

#endif  // CEF_INCLUDE_INTERNAL_CEF_PTR_H_
