#include "libs/catalogUtil/os_mutex.h"

_dcfMutexAttributes::_dcfMutexAttributes() {
  pthread_mutexattr_init(&m_attributes);
  pthread_mutexattr_settype(&m_attributes, PTHREAD_MUTEX_RECURSIVE);
}

_dcfMutexAttributes::~_dcfMutexAttributes() { pthread_mutexattr_destroy(&m_attributes); }

const _dcfMutexAttributes& _dcfMutexAttributes::Default() {
  static const _dcfMutexAttributes attributes;
  return attributes;
}

os_mutex::os_mutex() { pthread_mutex_init(&m_mutex, _dcfMutexAttributes::Default().get()); }

os_mutex::~os_mutex() { pthread_mutex_destroy(&m_mutex); }

void os_mutex::lock() { pthread_mutex_lock(&m_mutex); }

bool os_mutex::try_lock() { return pthread_mutex_trylock(&m_mutex) == 0; }

void os_mutex::unlock() { pthread_mutex_unlock(&m_mutex); }

os_mutex _dcfLocks::oAtomicAccessToLong;
