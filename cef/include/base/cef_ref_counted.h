// Intrusive reference counting: a base class that counts, and the smart pointer that holds.
// A fresh object counts 0; the first scoped_refptr makes it 1.

#ifndef CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
#define CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_

#include <utility>

#include "include/base/cef_atomic_ref_count.h"
#include "include/base/cef_logging.h"
#include "include/base/cef_macros.h"

namespace base {

template <class T, typename Traits>
class RefCountedThreadSafe;

// How the last Release of a RefCountedThreadSafe ends the object, unless its class says otherwise.
template <typename T>
struct DefaultRefCountedThreadSafeTraits {
  static void Destruct(const T* object) {
    RefCountedThreadSafe<T, DefaultRefCountedThreadSafeTraits>::DeleteInternal(object);
  }
};

// For objects that several threads hold. `Traits::Destruct` runs on the thread of the last Release.
template <class T, typename Traits = DefaultRefCountedThreadSafeTraits<T>>
class RefCountedThreadSafe {
 public:
  RefCountedThreadSafe() = default;

  void AddRef() const { AtomicRefCountInc(&count_); }
  void Release() const {
    if (!AtomicRefCountDec(&count_)) Traits::Destruct(static_cast<const T*>(this));
  }

 protected:
  ~RefCountedThreadSafe() = default;

 private:
  friend struct DefaultRefCountedThreadSafeTraits<T>;
  static void DeleteInternal(const T* object) { delete object; }

  mutable AtomicRefCount count_ = 0;

  DISALLOW_COPY_AND_ASSIGN(RefCountedThreadSafe);
};

}  // namespace base

// Holds one reference to a `T`, or nothing. Converts to `T*` on its own; newer generations of the
// API do not, so write get() where a plain pointer is wanted.
template <class T>
class scoped_refptr {
 public:
  scoped_refptr() = default;
  scoped_refptr(T* object) : ptr_(object) {
    if (ptr_) ptr_->AddRef();
  }
  scoped_refptr(const scoped_refptr<T>& other) : scoped_refptr(other.ptr_) {}
  template <typename U>
  scoped_refptr(const scoped_refptr<U>& other) : scoped_refptr(other.get()) {}

  ~scoped_refptr() {
    if (ptr_) ptr_->Release();
  }

  T* get() const { return ptr_; }
  operator T*() const { return ptr_; }
  T* operator->() const {
    DCHECK(ptr_ != nullptr);
    return ptr_;
  }

  scoped_refptr<T>& operator=(T* object) {
    // The new reference comes first: the old object may own the new one.
    scoped_refptr<T>(object).swap(*this);
    return *this;
  }
  scoped_refptr<T>& operator=(const scoped_refptr<T>& other) { return *this = other.ptr_; }
  template <typename U>
  scoped_refptr<T>& operator=(const scoped_refptr<U>& other) {
    return *this = other.get();
  }

  void swap(scoped_refptr<T>& other) { std::swap(ptr_, other.ptr_); }

 private:
  T* ptr_ = nullptr;
};

#endif  // CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
