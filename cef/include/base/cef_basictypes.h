// Integer types with a fixed width, and the UTF-16 code unit.

#ifndef CEF_INCLUDE_BASE_CEF_BASICTYPES_H_
#define CEF_INCLUDE_BASE_CEF_BASICTYPES_H_

#include <cstddef>
#include <cstdint>

#include "include/base/cef_build.h"

typedef int8_t int8;
typedef int16_t int16;
typedef int32_t int32;
typedef int64_t int64;
typedef uint8_t uint8;
typedef uint16_t uint16;
typedef uint32_t uint32;
typedef uint64_t uint64;

// Not char16_t: the API's strings hold plain unsigned shorts.
typedef unsigned short char16;

#endif  // CEF_INCLUDE_BASE_CEF_BASICTYPES_H_
