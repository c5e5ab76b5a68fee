#include <cstdio>
#include <cstdlib>

#include "include/base/cef_logging.h"

namespace cef {
namespace logging {

void CheckFailed(const char* file, int line, const char* condition) {
  fprintf(stderr, "%s:%d: check failed: %s\n", file, line, condition);
  fflush(stderr);
  abort();
}

}  // namespace logging
}  // namespace cef
