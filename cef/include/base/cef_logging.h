// Assertions. CHECK holds in every build, DCHECK in builds without NDEBUG (or with
// DCHECK_ALWAYS_ON). A failed one names itself on standard error and aborts.

#ifndef CEF_INCLUDE_BASE_CEF_LOGGING_H_
#define CEF_INCLUDE_BASE_CEF_LOGGING_H_

#include "include/base/cef_build.h"

namespace cef {
namespace logging {

// Does not return.
[[noreturn]] void CheckFailed(const char* file, int line, const char* condition);

}  // namespace logging
}  // namespace cef

#define CHECK(condition)                               \
  (static_cast<bool>(condition) ? static_cast<void>(0) \
                                : ::cef::logging::CheckFailed(__FILE__, __LINE__, #condition))

#if defined(NDEBUG) && !defined(DCHECK_ALWAYS_ON)
// Still compiled, never evaluated: what only a DCHECK mentions is no unused variable.
#define DCHECK(condition) static_cast<void>(sizeof(static_cast<bool>(condition)))
#else
#define DCHECK(condition) CHECK(condition)
#endif

#endif  // CEF_INCLUDE_BASE_CEF_LOGGING_H_
