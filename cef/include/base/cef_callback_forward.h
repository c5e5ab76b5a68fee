// Names of the callback types, for headers that only pass them on.

#ifndef CEF_INCLUDE_BASE_CEF_CALLBACK_FORWARD_H_
#define CEF_INCLUDE_BASE_CEF_CALLBACK_FORWARD_H_

namespace base {

template <typename Signature>
class Callback;

typedef Callback<void(void)> Closure;

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_CALLBACK_FORWARD_H_
