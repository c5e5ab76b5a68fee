// A reference counter for several threads. Starts at whatever the owner puts there, usually 0.

#ifndef CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
#define CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_

#include "include/base/cef_basictypes.h"

namespace base {

typedef int32 AtomicRefCount;

inline void AtomicRefCountInc(volatile AtomicRefCount* count) {
  __atomic_fetch_add(count, 1, __ATOMIC_RELAXED);
}

// True while references remain. What was written before a release is seen by whoever drops the
// last reference.
inline bool AtomicRefCountDec(volatile AtomicRefCount* count) {
  return __atomic_sub_fetch(count, 1, __ATOMIC_ACQ_REL) != 0;
}

inline bool AtomicRefCountIsOne(volatile AtomicRefCount* count) {
  return __atomic_load_n(count, __ATOMIC_ACQUIRE) == 1;
}

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
