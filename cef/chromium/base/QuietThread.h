// Threads that no signal disturbs.

#ifndef CEF_CHROMIUM_BASE_QUIETTHREAD_H_
#define CEF_CHROMIUM_BASE_QUIETTHREAD_H_

#include <csignal>
#include <thread>
#include <utility>

namespace engine {

// Starts a thread with all signals blocked: they are for the threads that expect them, and a new
// thread takes over its maker's mask. Throws std::system_error when no thread can be had.
template <typename Function>
std::thread StartQuietThread(Function function) {
  struct Blocked {
    sigset_t before;
    Blocked() {
      sigset_t all;
      sigfillset(&all);
      pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~Blocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
  } blocked;
  return std::thread(std::move(function));
}

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_QUIETTHREAD_H_
