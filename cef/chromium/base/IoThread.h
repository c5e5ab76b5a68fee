// The IO thread: it serves descriptors and tasks, and the client's network callbacks run on it.
//
// There is one per process; it runs until the process ends. What runs on it must not wait for the
// UI thread.

#ifndef CEF_CHROMIUM_BASE_IOTHREAD_H_
#define CEF_CHROMIUM_BASE_IOTHREAD_H_

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <thread>

#include "cef/chromium/base/TaskQueue.h"

namespace engine {

class IoThread {
 public:
  // `revents` as poll() reports them.
  using ReadyHandler = std::function<void(short revents)>;

  // Never destroyed, so that late threads may still post.
  static IoThread& Get();

  // Starts the thread; it inherits the caller's signal mask. False when there are no descriptors
  // left. Later calls do nothing.
  bool Start();

  // Tasks run in the order of posting. False, and the task is dropped, before Start(). Any thread.
  bool PostTask(Task task);
  bool PostDelayedTask(Task task, int64_t ms);

  bool OnIoThread() const;

  // Calls `ready` whenever `fd` has one of `events` (POLLIN, POLLOUT) or has failed. A second call
  // for the descriptor replaces the first. IO thread only.
  void Watch(int fd, short events, ReadyHandler ready);
  void Unwatch(int fd);

 private:
  struct Watched {
    short events;
    ReadyHandler ready;
  };

  IoThread() = default;

  void Run();
  void RunTasks();
  int TimeoutMs();
  void Wake();

  TaskQueue tasks_;
  std::map<int, Watched> watched_;  // IO thread only

  std::atomic<bool> started_{false};
  std::atomic<std::thread::id> id_{};
  int wake_fd_ = -1;  // eventfd, owned for the life of the process
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_IOTHREAD_H_
