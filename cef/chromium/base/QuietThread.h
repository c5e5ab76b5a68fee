// Threads that no signal disturbs.

#ifndef CEF_CHROMIUM_BASE_QUIETTHREAD_H_
#define CEF_CHROMIUM_BASE_QUIETTHREAD_H_

#include <csignal>
#include <thread>
#include <utility>

namespace engine {

// Starts a thread with all signals blocked: they are for the threads that expect them, and a new
// thread takes over its maker's mask.
template <typename Function>
std::thread StartQuietThread(Function function) {
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread thread(std::move(function));
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_QUIETTHREAD_H_
