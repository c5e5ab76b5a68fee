#include <pthread.h>

#include "platform/ThreadId.h"

uint32_t CurrentThreadId() { return pthread_mach_thread_np(pthread_self()); }
