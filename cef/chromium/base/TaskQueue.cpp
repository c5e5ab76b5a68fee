#include "cef/chromium/base/TaskQueue.h"

#include <utility>

namespace engine {

void TaskQueue::Post(Task task) {
  std::lock_guard<std::mutex> lock(mutex_);
  ready_.push_back(std::move(task));
}

void TaskQueue::PostDelayed(Task task, int64_t ms) {
  std::lock_guard<std::mutex> lock(mutex_);
  // The map keeps equal times in the order of their coming.
  due_.emplace(Clock::now() + std::chrono::milliseconds(ms), std::move(task));
}

size_t TaskQueue::Ready() {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto end = due_.upper_bound(Clock::now());
  for (auto it = due_.begin(); it != end; it = due_.erase(it)) {
    ready_.push_back(std::move(it->second));
  }
  return ready_.size();
}

Task TaskQueue::Take() {
  std::lock_guard<std::mutex> lock(mutex_);
  Task task = std::move(ready_.front());
  ready_.pop_front();
  return task;
}

std::optional<std::chrono::milliseconds> TaskQueue::UntilNext() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!ready_.empty()) return std::chrono::milliseconds(0);
  if (due_.empty()) return std::nullopt;
  return TimeLeft(due_.begin()->first);
}

}  // namespace engine
