// Work for one of the framework's threads.

#ifndef CEF_INCLUDE_CEF_TASK_H_
#define CEF_INCLUDE_CEF_TASK_H_

#include "include/cef_base.h"

typedef cef_thread_id_t CefThreadId;

// Implemented by the client (base::Bind makes one, see include/wrapper/cef_closure_task.h).
class CefTask : public virtual CefBaseRefCounted {
 public:
  // Runs once, on the thread the task was posted to.
  virtual void Execute() = 0;
};

// True when called on that thread; false for every thread before CefInitialize.
bool CefCurrentlyOn(CefThreadId threadId);

// Queues `task`; tasks of one thread run in the order they were posted. False, and the task is
// dropped, when it is null or CEF is not initialised. From any thread.
bool CefPostTask(CefThreadId threadId, CefRefPtr<CefTask> task);

// As above, not before `delay_ms` milliseconds have passed.
bool CefPostDelayedTask(CefThreadId threadId, CefRefPtr<CefTask> task, int64 delay_ms);

#endif  // CEF_INCLUDE_CEF_TASK_H_
