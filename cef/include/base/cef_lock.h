// A lock and its scope guards.

#ifndef CEF_INCLUDE_BASE_CEF_LOCK_H_
#define CEF_INCLUDE_BASE_CEF_LOCK_H_

#include <mutex>

#include "include/base/cef_macros.h"

namespace base {

// Not recursive.
class Lock {
 public:
  Lock() = default;

  void Acquire() { mutex_.lock(); }
  void Release() { mutex_.unlock(); }
  // True when the lock was free and is now held.
  bool Try() { return mutex_.try_lock(); }
  void AssertAcquired() const {}

 private:
  std::mutex mutex_;

  DISALLOW_COPY_AND_ASSIGN(Lock);
};

// Holds the lock while it lives.
class AutoLock {
 public:
  explicit AutoLock(Lock& lock) : lock_(lock) { lock_.Acquire(); }
  ~AutoLock() { lock_.Release(); }

 private:
  Lock& lock_;

  DISALLOW_COPY_AND_ASSIGN(AutoLock);
};

// Gives a held lock up while it lives.
class AutoUnlock {
 public:
  explicit AutoUnlock(Lock& lock) : lock_(lock) { lock_.Release(); }
  ~AutoUnlock() { lock_.Acquire(); }

 private:
  Lock& lock_;

  DISALLOW_COPY_AND_ASSIGN(AutoUnlock);
};

}  // namespace base

#endif  // CEF_INCLUDE_BASE_CEF_LOCK_H_
