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
  tasks_.Post(std::move(task));
  Wake();
  return true;
}

bool IoThread::PostDelayedTask(Task task, int64_t ms) {
  if (!started_) return false;
  tasks_.PostDelayed(std::move(task), ms);
  Wake();
  return true;
}

void IoThread::Watch(int fd, short events, ReadyHandler ready) {
  watched_[fd] = {events, std::move(ready)};
}

void IoThread::Unwatch(int fd) { watched_.erase(fd); }

void IoThread::Wake() { eventfd_write(wake_fd_, 1); }

int IoThread::TimeoutMs() {
  const auto left = tasks_.UntilNext();
  return left ? static_cast<int>(std::min<int64_t>(left->count(), 60 * 60 * 1000)) : -1;
}

// Runs what is queued now. Tasks that these post wait until the descriptors had their turn.
void IoThread::RunTasks() {
  for (size_t left = tasks_.Ready(); left > 0; --left) tasks_.Take()();
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
