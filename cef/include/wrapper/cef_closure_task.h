// Posting of closures made by base::Bind.

#ifndef CEF_INCLUDE_WRAPPER_CEF_CLOSURE_TASK_H_
#define CEF_INCLUDE_WRAPPER_CEF_CLOSURE_TASK_H_

#include "include/base/cef_callback_forward.h"
#include "include/cef_base.h"
#include "include/cef_task.h"

// A task that runs `closure`.
CefRefPtr<CefTask> CefCreateClosureTask(const base::Closure& closure);

// As their namesakes in include/cef_task.h.
bool CefPostTask(CefThreadId threadId, const base::Closure& closure);
bool CefPostDelayedTask(CefThreadId threadId, const base::Closure& closure, int64 delay_ms);

#endif  // CEF_INCLUDE_WRAPPER_CEF_CLOSURE_TASK_H_
