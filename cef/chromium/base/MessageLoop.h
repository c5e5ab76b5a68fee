// The UI thread's loop: it serves AppKit events, tasks posted from any thread, and the three
// signals by which the outside ends a run.
//
// There is one loop per process and it belongs to the main thread. It works with a display, without
// one, and without any application object.

#ifndef CEF_CHROMIUM_BASE_MESSAGELOOP_H_
#define CEF_CHROMIUM_BASE_MESSAGELOOP_H_

#include <atomic>
#include <csignal>
#include <cstdint>
#include <deque>
#include <thread>
#include <utility>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/base/TaskQueue.h"

namespace engine {

class MessageLoop {
 public:
  // The process's loop. It is never destroyed, so that late threads may still post.
  static MessageLoop& Get();

  // Prepares the loop on the calling thread, which must be the main one. Resets SIGHUP, SIGINT and
  // SIGTERM to their default actions and blocks them in this thread; threads created later inherit
  // the mask, and whoever starts a process must clear it in the child. Later calls do nothing.
  // False when there are no descriptors left.
  bool Init();

  // From now on a signal is taken even when this thread waits for a display that does not answer:
  // after a few seconds that display counts as lost. Throws std::system_error when no thread can be
  // had. UI thread, once, after Init().
  void GuardSignals();

  // Serves the loop until Quit(). Returns at once on another thread, before Init(), or when called
  // from within itself. May be called again after it has returned. The three signals stay blocked
  // between runs and are handed over by the next one.
  void Run();

  // Makes Run() return when it is idle: every task that is queued or due by then still runs,
  // delayed ones that are not due stay queued for the next Run(). Without a running loop this does
  // nothing and is not remembered. Any thread.
  void Quit();

  // Waits until the descriptor is readable; tasks and events wait meanwhile. False when the time
  // has come, the display has gone, or one of the three signals has come first; that stays for
  // HandOverSignals() or Run().
  // UI thread, or any before Init().
  bool AwaitReadable(int fd, Clock::time_point end);

  // Hands over the signals that wait, as Run() does. UI thread.
  void HandOverSignals();

  // Called on the UI thread, outside of any other task, when the display has gone; before Run().
  // The loop then goes on without one.
  void OnDisplayLost(Task handler) { on_display_lost_ = std::move(handler); }
  // Whether that has happened, though the handler may not have been called yet. UI thread.
  bool DisplayIsLost() const;

  // The end of the run: an open alert, or one that still comes, ends as if it had been refused.
  // Any thread.
  void BreakAlerts();

  // Runs the task on the UI thread, in the order of posting. Tasks posted before Run() wait for it.
  // No task starts while another one runs, not even inside a modal alert. False, and the task is
  // dropped, before Init(). Any thread.
  bool PostTask(Task task);

  // The same, not before `ms` milliseconds have passed; equal due times keep the posting order.
  bool PostDelayedTask(Task task, int64_t ms);

  // The same as PostTask(), but an alert that keeps the task waiting ends as if it had been
  // refused.
  bool PostUrgentTask(Task task);

  // True on the thread that called Init(); false everywhere before that.
  bool OnUiThread() const;

  // Between the two calls, which nest, signals are kept instead of being handed over. Any thread.
  void HoldSignals();
  void ReleaseSignals();
  // Whether a signal waits to be handed over. UI thread.
  bool SignalWaits();
  // Whether something waits for which an open alert ends without the user's answer. UI thread.
  bool AlertsMustEnd();
  // Called on the UI thread before each signal is handed over; before Run().
  void OnSignal(Task handler) { on_signal_ = std::move(handler); }
  // Called on the UI thread, as a task, when a signal arrives while signals are held; before Run().
  void OnSignalHeld(Task handler) { on_signal_held_ = std::move(handler); }

  // For the loop's own descriptor watcher: takes what arrived and makes a waiting Run() go on.
  void OnDescriptorReadable();

 private:
  MessageLoop() = default;

  void RunTasks();
  void Turn();
  void Wait();
  void TakeUpDisplay();
  void LoseDisplay();
  void CollectSignals();
  void DeliverSignals();
  void LetAlertsStay();
  static void Deliver(int number);

  TaskQueue tasks_;

  std::atomic<bool> initialised_{false};
  std::thread::id ui_thread_;  // set once, before initialised_
  std::atomic<bool> running_{false};
  std::atomic<bool> quit_{false};
  std::atomic<bool> break_alerts_{false};
  std::atomic<int> urgent_tasks_{0};
  std::atomic<int> holds_{0};

  // Owned for the life of the process.
  int wake_fd_ = -1;     // eventfd: something was posted
  int signal_fd_ = -1;   // signalfd of the three signals
  int pending_fd_ = -1;  // eventfd, readable while something waits for the end of an alert

  std::deque<int> pending_signals_;  // UI thread only
  Task on_display_lost_;             // UI thread only
  Task on_signal_held_;              // UI thread only
  Task on_signal_;                   // UI thread only
  bool launched_ = false;            // UI thread only
  bool display_lost_ = false;        // UI thread only
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_MESSAGELOOP_H_
