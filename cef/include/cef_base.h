// What every interface of the API derives from, and the macro that implements it.

#ifndef CEF_INCLUDE_CEF_BASE_H_
#define CEF_INCLUDE_CEF_BASE_H_

#include "include/base/cef_atomic_ref_count.h"
#include "include/base/cef_build.h"
#include "include/base/cef_macros.h"
#include "include/internal/cef_linux.h"
#include "include/internal/cef_ptr.h"
#include "include/internal/cef_types_wrappers.h"

// A counted object. Any thread may hold references; the last one deletes the object in place.
class CefBaseRefCounted {
 public:
  virtual void AddRef() const = 0;
  // True when this was the last reference and the object is gone.
  virtual bool Release() const = 0;
  virtual bool HasOneRef() const = 0;

 protected:
  virtual ~CefBaseRefCounted() = default;
};

// The counter that IMPLEMENT_REFCOUNTING puts into a class.
class CefRefCount {
 public:
  CefRefCount() = default;

  void AddRef() const { base::AtomicRefCountInc(&count_); }
  // True when the count has reached zero.
  bool Release() const { return !base::AtomicRefCountDec(&count_); }
  bool HasOneRef() const { return base::AtomicRefCountIsOne(&count_); }

 private:
  mutable base::AtomicRefCount count_ = 0;

  DISALLOW_COPY_AND_ASSIGN(CefRefCount);
};

// Counts references of `ClassName`. Stands last in the class, followed by a semicolon; what comes
// after it is private.
#define IMPLEMENT_REFCOUNTING(ClassName)                             \
 public:                                                             \
  void AddRef() const override { ref_count_.AddRef(); }              \
  bool Release() const override {                                    \
    if (!ref_count_.Release()) return false;                         \
    delete static_cast<const ClassName*>(this);                      \
    return true;                                                     \
  }                                                                  \
  bool HasOneRef() const override { return ref_count_.HasOneRef(); } \
                                                                     \
 private:                                                            \
  CefRefCount ref_count_

#endif  // CEF_INCLUDE_CEF_BASE_H_
