// Small declarations that other headers and their users share.

#ifndef CEF_INCLUDE_BASE_CEF_MACROS_H_
#define CEF_INCLUDE_BASE_CEF_MACROS_H_

#include <cstddef>

#include "include/base/cef_build.h"

// Forbids copying; stands in the private section of a class, followed by a semicolon.
#ifndef DISALLOW_COPY_AND_ASSIGN
#define DISALLOW_COPY_AND_ASSIGN(TypeName) \
  TypeName(const TypeName&) = delete;      \
  void operator=(const TypeName&) = delete
#endif

#endif  // CEF_INCLUDE_BASE_CEF_MACROS_H_
