#include <unistd.h>

#include "platform/ThreadId.h"

uint32_t CurrentThreadId() { return static_cast<uint32_t>(gettid()); }
