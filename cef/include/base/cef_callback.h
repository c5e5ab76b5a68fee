// base::Callback: something that can be run later, made by base::Bind. Copies share what was bound;
// they may be made, run and dropped on any thread.

#ifndef CEF_INCLUDE_BASE_CEF_CALLBACK_H_
#define CEF_INCLUDE_BASE_CEF_CALLBACK_H_

#include <utility>

#include "include/base/cef_callback_forward.h"
#include "include/base/cef_ref_counted.h"

namespace base {

namespace cef_internal {

// What a callback shares with its copies: the function and its bound arguments.
template <typename R, typename... Args>
class BoundCall : public RefCountedThreadSafe<BoundCall<R, Args...>> {
 public:
  virtual R Run(Args... args) = 0;

 protected:
  friend struct DefaultRefCountedThreadSafeTraits<BoundCall>;
  friend class RefCountedThreadSafe<BoundCall<R, Args...>>;
  virtual ~BoundCall() = default;
};

}  // namespace cef_internal

template <typename R, typename... Args>
class Callback<R(Args...)> {
 public:
  // A null callback; it must not be run.
  Callback() = default;

  // For base::Bind.
  explicit Callback(cef_internal::BoundCall<R, Args...>* call) : call_(call) {}

  R Run(Args... args) const {
    // The bound state stays alive while it runs, whatever becomes of this object meanwhile.
    const scoped_refptr<cef_internal::BoundCall<R, Args...>> call = call_;
    return call->Run(std::forward<Args>(args)...);
  }

  bool is_null() const { return call_.get() == nullptr; }
  void Reset() { call_ = nullptr; }
  // True for copies of one callback, not for two that were bound alike.
  bool Equals(const Callback& other) const { return call_.get() == other.call_.get(); }

 private:
  scoped_refptr<cef_internal::BoundCall<R, Args...>> call_;
};

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_CALLBACK_H_
