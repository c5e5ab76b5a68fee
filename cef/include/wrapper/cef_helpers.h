// Checks of the current thread, and deletion on a certain one.

#ifndef CEF_INCLUDE_WRAPPER_CEF_HELPERS_H_
#define CEF_INCLUDE_WRAPPER_CEF_HELPERS_H_

#include "include/base/cef_bind.h"
#include "include/base/cef_logging.h"
#include "include/base/cef_macros.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"

#define CEF_REQUIRE_UI_THREAD() DCHECK(CefCurrentlyOn(TID_UI));
#define CEF_REQUIRE_IO_THREAD() DCHECK(CefCurrentlyOn(TID_IO));

// Traits for base::RefCountedThreadSafe: the object is deleted on `thread`. When that thread takes
// no tasks (before CefInitialize, after the end) the object is left alone for good.
template <CefThreadId thread>
struct CefDeleteOnThread {
  template <typename T>
  static void Destruct(const T* object) {
    if (CefCurrentlyOn(thread)) {
      delete object;
    } else {
      CefPostTask(thread, base::Bind(&CefDeleteOnThread<thread>::template Destruct<T>, object));
    }
  }
};

struct CefDeleteOnIOThread : public CefDeleteOnThread<TID_IO> {};

#endif  // CEF_INCLUDE_WRAPPER_CEF_HELPERS_H_
