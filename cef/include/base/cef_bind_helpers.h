// How base::Bind stores what it is given.

#ifndef CEF_INCLUDE_BASE_CEF_BIND_HELPERS_H_
#define CEF_INCLUDE_BASE_CEF_BIND_HELPERS_H_

#include <type_traits>

#include "include/base/cef_ref_counted.h"

namespace base {

namespace cef_internal {

template <typename T>
class UnretainedPointer {
 public:
  explicit UnretainedPointer(T* object) : object_(object) {}
  T* get() const { return object_; }

 private:
  T* object_;
};

// Arguments are stored by value; literals and arrays as pointers.
template <typename T>
struct StoredArgument {
  typedef std::decay_t<const T> Type;
};

// The receiver of a method is held by a reference unless base::Unretained says otherwise, so its
// class has to be reference counted.
template <typename T>
struct StoredReceiver {
  typedef T Type;
};
template <typename T>
struct StoredReceiver<T*> {
  typedef scoped_refptr<T> Type;
};

template <typename T>
const T& Unwrap(const T& stored) {
  return stored;
}
template <typename T>
T* Unwrap(const UnretainedPointer<T>& stored) {
  return stored.get();
}

template <typename T>
T* ReceiverOf(T* stored) {
  return stored;
}
template <typename T>
T* ReceiverOf(const scoped_refptr<T>& stored) {
  return stored.get();
}
template <typename T>
T* ReceiverOf(const UnretainedPointer<T>& stored) {
  return stored.get();
}

}  // namespace cef_internal

// Binds a pointer without a reference: the caller sees to it that the object outlives the callback.
template <typename T>
cef_internal::UnretainedPointer<T> Unretained(T* object) {
  return cef_internal::UnretainedPointer<T>(object);
}

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_BIND_HELPERS_H_
