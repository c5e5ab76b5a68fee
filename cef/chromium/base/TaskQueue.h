// The tasks of one thread.

#ifndef CEF_CHROMIUM_BASE_TASKQUEUE_H_
#define CEF_CHROMIUM_BASE_TASKQUEUE_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>

#include "cef/chromium/base/Deadline.h"

namespace engine {

using Task = std::function<void()>;

// Tasks are posted by any thread and taken by one, which somebody else has to wake up.
class TaskQueue {
 public:
  void Post(Task task);
  // For `ms` milliseconds from now; equal times keep the posting order.
  void PostDelayed(Task task, int64_t ms);

  // How many tasks are ready. What has become due joins the end of the queue.
  size_t Ready();
  // Takes out the first task that is ready, of which there must be one.
  Task Take();
  // How long until a task is ready: zero if one is, nothing if none is queued.
  std::optional<std::chrono::milliseconds> UntilNext();

 private:
  std::mutex mutex_;
  std::deque<Task> ready_;                      // guarded by mutex_
  std::multimap<Clock::time_point, Task> due_;  // guarded by mutex_
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_TASKQUEUE_H_
