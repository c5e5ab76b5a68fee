// A framework that is loaded and does nothing: every function is there and returns the neutral
// value, but for a few that let a test see that they were reached.

#include <cstdlib>

#include "cef/wrapper/exports.h"

namespace {

template <typename R>
struct Answer {
  static R Of() { return R(); }
};
template <>
struct Answer<bool> {
  static bool Of() { return true; }
};
template <>
struct Answer<const char*> {
  static const char* Of() { return getenv("FAKE_API_HASH"); }
};

}  // namespace

#define CEF_FUNCTION(result, name, parameters) \
  result name parameters { return Answer<result>::Of(); }
CEF_FUNCTIONS(CEF_FUNCTION)
