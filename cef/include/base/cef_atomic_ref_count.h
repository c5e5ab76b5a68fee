// A reference counter for several threads. Starts at whatever the owner puts there, usually 0.

#ifndef CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
#define CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_

#include "include/base/cef_basictypes.h"

#define ATOMIC_DECLARATION = 0

namespace base {

namespace subtle {
typedef int32 Atomic32;
}

typedef subtle::Atomic32 AtomicRefCount;

inline void AtomicRefCountIncN(volatile AtomicRefCount* count, AtomicRefCount by) {
  __atomic_fetch_add(count, by, __ATOMIC_RELAXED);
}

// True while references remain. What was written before a release is seen by whoever drops the
// last reference.
inline bool AtomicRefCountDecN(volatile AtomicRefCount* count, AtomicRefCount by) {
  return __atomic_sub_fetch(count, by, __ATOMIC_ACQ_REL) != 0;
}

inline void AtomicRefCountInc(volatile AtomicRefCount* count) { AtomicRefCountIncN(count, 1); }

inline bool AtomicRefCountDec(volatile AtomicRefCount* count) {
  return AtomicRefCountDecN(count, 1);
}

inline bool AtomicRefCountIsOne(volatile AtomicRefCount* count) {
  return __atomic_load_n(count, __ATOMIC_ACQUIRE) == 1;
}

inline bool AtomicRefCountIsZero(volatile AtomicRefCount* count) {
  return __atomic_load_n(count, __ATOMIC_ACQUIRE) == 0;
}

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_ATOMIC_REF_COUNT_H_
