// The lock of the catalogs.

#ifndef LIBS_CATALOGUTIL_OS_MUTEX_H_
#define LIBS_CATALOGUTIL_OS_MUTEX_H_

#include <pthread.h>

// Attributes of a mutex that the thread holding it may take again: a catalog holds its lock while a
// file is read, and every record of the file takes it again.
class _dcfMutexAttributes {
 public:
  // The one instance of the process, made at the first call. Any thread.
  static const _dcfMutexAttributes& Default();

  _dcfMutexAttributes(const _dcfMutexAttributes&) = delete;
  _dcfMutexAttributes& operator=(const _dcfMutexAttributes&) = delete;
  ~_dcfMutexAttributes();

  const pthread_mutexattr_t* get() const { return &m_attributes; }

 private:
  _dcfMutexAttributes();

  pthread_mutexattr_t m_attributes;
};

// One recursive POSIX mutex. Fits std::lock_guard. Destroy it only while nobody holds it.
class os_mutex {
 public:
  os_mutex();
  os_mutex(const os_mutex&) = delete;
  os_mutex& operator=(const os_mutex&) = delete;
  virtual ~os_mutex();

  // Waits until the calling thread holds the mutex; each call needs an unlock().
  virtual void lock();
  // Like lock(), but answers false at once when another thread holds it.
  virtual bool try_lock();
  // By the thread that holds it.
  virtual void unlock();

 private:
  pthread_mutex_t m_mutex;
};

struct _dcfLocks {
  // For atomic access to long integers. It exists from start to exit, and nothing here takes it.
  static os_mutex oAtomicAccessToLong;
};

#endif  // LIBS_CATALOGUTIL_OS_MUTEX_H_
