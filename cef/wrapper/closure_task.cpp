#include "include/base/cef_callback.h"
#include "include/wrapper/cef_closure_task.h"

namespace {

class ClosureTask : public CefTask {
 public:
  explicit ClosureTask(const base::Closure& closure) : closure_(closure) {}

  void Execute() override {
    closure_.Run();
    // What was bound is given up on this thread, not wherever the task is dropped.
    closure_.Reset();
  }

 private:
  base::Closure closure_;

  IMPLEMENT_REFCOUNTING(ClosureTask);
};

}  // namespace

CefRefPtr<CefTask> CefCreateClosureTask(const base::Closure& closure) {
  return new ClosureTask(closure);
}

bool CefPostTask(CefThreadId threadId, const base::Closure& closure) {
  return CefPostTask(threadId, CefCreateClosureTask(closure));
}

bool CefPostDelayedTask(CefThreadId threadId, const base::Closure& closure, int64 delay_ms) {
  return CefPostDelayedTask(threadId, CefCreateClosureTask(closure), delay_ms);
}
