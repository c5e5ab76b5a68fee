#include "cef/chromium/base/IoThread.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace engine {

IoThread& IoThread::Get() {
  static IoThread* thread = new IoThread;
  return *thread;
}

bool IoThread::Start() {
  if (started_) return true;
  wake_fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wake_fd_ < 0) return false;
  std::thread thread([this] { Run(); });
  id_ = thread.get_id();
  thread.detach();
  started_ = true;
  return true;
}

bool IoThread::OnIoThread() const { return std::this_thread::get_id() == id_.load(); }

bool IoThread::PostTask(Task task) {
  if (!started_) return false;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    ready_.push_back(std::move(task));
  }
  Wake();
  return true;
}

bool IoThread::PostDelayedTask(Task task, int64_t ms) {
  if (!started_) return false;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    due_.emplace(Clock::now() + std::chrono::milliseconds(ms), std::move(task));
  }
  Wake();
  return true;
}

void IoThread::Watch(int fd, short events, ReadyHandler ready) {
  watched_[fd] = {events, std::move(ready)};
}

void IoThread::Unwatch(int fd) { watched_.erase(fd); }

void IoThread::Wake() { eventfd_write(wake_fd_, 1); }

int IoThread::TimeoutMs() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!ready_.empty()) return 0;
  if (due_.empty()) return -1;
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(due_.begin()->first - Clock::now());
  return static_cast<int>(std::clamp<int64_t>(left.count(), 0, 60 * 60 * 1000));
}

// Runs what is queued now. Tasks that these post wait until the descriptors had their turn.
void IoThread::RunTasks() {
  std::deque<Task> tasks;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto end = due_.upper_bound(Clock::now());
    for (auto it = due_.begin(); it != end; it = due_.erase(it)) {
      ready_.push_back(std::move(it->second));
    }
    tasks.swap(ready_);
  }
  for (Task& task : tasks) {
    task();
    task = nullptr;
  }
}

void IoThread::Run() {
  id_ = std::this_thread::get_id();
  std::vector<pollfd> polled;
  for (;;) {
    RunTasks();
    polled.assign(1, {wake_fd_, POLLIN, 0});
    for (const auto& [fd, watched] : watched_) polled.push_back({fd, watched.events, 0});
    poll(polled.data(), polled.size(), TimeoutMs());
    if (polled[0].revents) {
      eventfd_t ignored;
      eventfd_read(wake_fd_, &ignored);
    }
    for (size_t i = 1; i < polled.size(); ++i) {
      if (!polled[i].revents) continue;
      const auto watched = watched_.find(polled[i].fd);
      if (watched == watched_.end()) continue;
      // A copy: the handler may unwatch itself.
      const ReadyHandler ready = watched->second.ready;
      ready(polled[i].revents);
    }
  }
}

}  // namespace engine
