// Intrusive reference counting: two base classes that count, and the smart pointer that holds.
// A fresh object counts 0; the first scoped_refptr makes it 1.

#ifndef CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
#define CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_

#include <utility>

#include "include/base/cef_atomic_ref_count.h"
#include "include/base/cef_logging.h"
#include "include/base/cef_macros.h"

namespace base {

// For objects of one thread. `T` derives from RefCounted<T> and is deleted by the last Release.
template <class T>
class RefCounted {
 public:
  RefCounted() = default;

  void AddRef() const { ++count_; }
  void Release() const {
    if (--count_ == 0) delete static_cast<const T*>(this);
  }
  bool HasOneRef() const { return count_ == 1; }
  bool HasAtLeastOneRef() const { return count_ >= 1; }

 protected:
  ~RefCounted() = default;

 private:
  mutable int count_ = 0;

  DISALLOW_COPY_AND_ASSIGN(RefCounted);
};

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
  bool HasOneRef() const { return AtomicRefCountIsOne(&count_); }
  bool HasAtLeastOneRef() const { return !AtomicRefCountIsZero(&count_); }

 protected:
  ~RefCountedThreadSafe() = default;

 private:
  friend struct DefaultRefCountedThreadSafeTraits<T>;
  static void DeleteInternal(const T* object) { delete object; }

  mutable AtomicRefCount count_ = 0;

  DISALLOW_COPY_AND_ASSIGN(RefCountedThreadSafe);
};

// A count around any copyable value.
template <typename T>
class RefCountedData : public RefCountedThreadSafe<RefCountedData<T>> {
 public:
  RefCountedData() : data() {}
  explicit RefCountedData(const T& value) : data(value) {}

  T data;

 private:
  friend struct DefaultRefCountedThreadSafeTraits<RefCountedData>;
  friend class RefCountedThreadSafe<RefCountedData<T>>;
  ~RefCountedData() = default;
};

}  // namespace base

// Holds one reference to a `T`, or nothing. Converts to `T*` on its own; newer generations of the
// API do not, so write get() where a plain pointer is wanted.
template <class T>
class scoped_refptr {
 public:
  typedef T element_type;

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

  void swap(T** other) { std::swap(ptr_, *other); }
  void swap(scoped_refptr<T>& other) { swap(&other.ptr_); }

 private:
  T* ptr_ = nullptr;
};

template <typename T>
scoped_refptr<T> make_scoped_refptr(T* object) {
  return scoped_refptr<T>(object);
}

#endif  // CEF_INCLUDE_BASE_CEF_REF_COUNTED_H_
