// Four things reach the UI thread: AppKit's events, posted tasks, the three signals, and the loss
// of the display. All of them end AppKit's own wait, so an idle loop costs nothing.
//
// A turn of the loop, in order:
//   1. It takes up a display that has come, or leaves the one that is lost. AppKit reports the loss
//      in the middle of its own work, where nothing may be taken apart: there it is only noted.
//   2. It runs the tasks that are queued by now, and hands over signals after each. What they
//      post meanwhile waits for the next turn, or it would starve the events.
//   3. It waits for an event, or for the time of the next task, and gives the event to AppKit.
//
// Signals are blocked and read from a descriptor. Their handlers thus run between two tasks, when
// no lock is held, and may do what a signal handler usually must not.
//
// An alert is a second loop inside of a task. wake_fd_ is not watched in there, since no task may
// start while another one runs. What must not wait for the user (signals, urgent tasks, the end of
// the run) fills pending_fd_, which is watched in alerts only. It stays filled until the last of
// these has been served, so that an alert which opens a moment later ends as well.

#include "cef/chromium/base/MessageLoop.h"

#import <AppKit/AppKit.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>

#include "cef/chromium/base/QuietThread.h"
#import "platform/CatchThrown.h"
#include "platform/Display.h"
#include "platform/DisplayLoss.h"
#include "platform/WakeEvent.h"

// Tells the loop that one of its descriptors has become readable.
@interface EngineLoopWatcher : NSObject <RunLoopEvents>
@end

@implementation EngineLoopWatcher
- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
  (void)data;
  (void)type;
  (void)extra;
  (void)mode;
  engine::MessageLoop::Get().OnDescriptorReadable();
}
@end

namespace engine {
namespace {

constexpr int kSignals[] = {SIGHUP, SIGINT, SIGTERM};

// Where a turn waits. In the default mode GNUstep looks for changed defaults and new services every
// 30 s, of which nothing here makes use.
NSString* RestMode() { return NSEventTrackingRunLoopMode; }

sigset_t SignalSet() {
  sigset_t set;
  sigemptyset(&set);
  for (int number : kSignals) sigaddset(&set, number);
  return set;
}

void Watch(int fd, NSString* mode) {
  static EngineLoopWatcher* watcher = [[EngineLoopWatcher alloc] init];
  [[NSRunLoop currentRunLoop] addEvent:reinterpret_cast<void*>(static_cast<intptr_t>(fd))
                                  type:ET_RDESC
                               watcher:watcher
                               forMode:mode];
}

void Fill(int event_fd) { eventfd_write(event_fd, 1); }

void Drain(int event_fd) {
  eventfd_t ignored;
  eventfd_read(event_fd, &ignored);
}

NSEvent* NextEvent(NSDate* until, NSString* mode) {
  return [NSApp nextEventMatchingMask:NSAnyEventMask untilDate:until inMode:mode dequeue:YES];
}

class ScopedPool {
 public:
  ScopedPool() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~ScopedPool() { [pool_ drain]; }

 private:
  NSAutoreleasePool* pool_;
};

}  // namespace

MessageLoop& MessageLoop::Get() {
  static MessageLoop* loop = new MessageLoop;
  return *loop;
}

bool MessageLoop::Init() {
  if (initialised_) return true;
  ScopedPool pool;
  const sigset_t signals = SignalSet();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // Whoever has started us may have had them ignored; here they end the run.
  for (int number : kSignals) signal(number, SIG_DFL);

  wake_fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  pending_fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  signal_fd_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (wake_fd_ < 0 || pending_fd_ < 0 || signal_fd_ < 0) return false;
  // Tasks stop while an alert is open, signals do not: they end it.
  for (NSString* mode : {NSDefaultRunLoopMode, RestMode()}) {
    Watch(wake_fd_, mode);
    Watch(signal_fd_, mode);
  }
  Watch(signal_fd_, NSModalPanelRunLoopMode);
  Watch(pending_fd_, NSModalPanelRunLoopMode);
  ui_thread_ = std::this_thread::get_id();
  initialised_ = true;
  return true;
}

void MessageLoop::GuardSignals() {
  // By itself, since the IO thread has a display to wait for, too.
  StartQuietThread([this] {
    constexpr int kPatience = 4000;  // milliseconds; a caller has ten seconds
    constexpr int kAgain = 500;      // a connection may be tried once more
    const auto waits = [this](int ms) {
      pollfd watched = {signal_fd_, POLLIN, 0};
      return poll(&watched, 1, ms) > 0;
    };
    for (;;) {
      if (!waits(-1)) continue;
      for (usleep(kPatience * 1000); waits(0); usleep(kAgain * 1000)) CutDisplay();
    }
  }).detach();
}

bool MessageLoop::OnUiThread() const {
  return initialised_ && std::this_thread::get_id() == ui_thread_;
}

bool MessageLoop::PostTask(Task task) {
  if (!initialised_) return false;
  tasks_.Post(std::move(task));
  Fill(wake_fd_);
  return true;
}

bool MessageLoop::PostDelayedTask(Task task, int64_t ms) {
  if (!initialised_) return false;
  tasks_.PostDelayed(std::move(task), ms);
  Fill(wake_fd_);
  return true;
}

bool MessageLoop::PostUrgentTask(Task task) {
  if (!initialised_) return false;
  ++urgent_tasks_;
  Fill(pending_fd_);
  return PostTask([=] {
    --urgent_tasks_;
    LetAlertsStay();
    task();
  });
}

void MessageLoop::Quit() {
  if (!running_) return;
  quit_ = true;
  Fill(wake_fd_);
}

void MessageLoop::HoldSignals() { ++holds_; }

void MessageLoop::ReleaseSignals() {
  if (--holds_ == 0 && initialised_) Fill(wake_fd_);
}

void MessageLoop::Run() {
  if (!OnUiThread() || running_) return;
  struct Running {
    std::atomic<bool>& flag;
    ~Running() { flag = false; }
  } running{running_};
  quit_ = false;
  running_ = true;
  ConnectDisplay();
  do {
    ScopedPool pool;
    if (id thrown = CatchThrown([this] { Turn(); }); thrown && !display_lost_) {
      NSLog(@"message loop: exception in a turn: %@", thrown);
    }
  } while (!quit_ || tasks_.Ready() > 0);
}

void MessageLoop::Turn() {
  if (!launched_ && HaveDisplay()) TakeUpDisplay();
  if (display_lost_ && HaveDisplay()) LoseDisplay();
  RunTasks();
  if (!quit_) Wait();
}

void MessageLoop::TakeUpDisplay() {
  launched_ = true;
  // Called in the middle of AppKit's work, which has to be left first.
  WatchDisplay([] {
    MessageLoop& loop = Get();
    loop.display_lost_ = true;
    loop.BreakAlerts();
    Fill(loop.wake_fd_);
  });
  // Without this an alert takes mouse clicks but no keys.
  [NSApp finishLaunching];
}

void MessageLoop::LoseDisplay() {
  LeaveDisplay();
  if (on_display_lost_) on_display_lost_();
}

bool MessageLoop::DisplayIsLost() const { return display_lost_ || DisplayHasGone(); }

void MessageLoop::BreakAlerts() {
  if (!initialised_) return;
  break_alerts_ = true;
  Fill(pending_fd_);
}

bool MessageLoop::AwaitReadable(int fd, Clock::time_point end) {
  pollfd watched[] = {
      {fd, POLLIN, 0}, {signal_fd_, POLLIN, 0}, {DisplayConnection(), POLLRDHUP, 0}};
  return PollUntil(pending_signals_.empty() ? end : Clock::now(), watched, 3) &&
         watched[0].revents != 0;
}

void MessageLoop::HandOverSignals() {
  if (!OnUiThread()) return;
  CollectSignals();
  DeliverSignals();
}

// Runs what is queued now. Tasks that these post wait for the next turn, so that they cannot starve
// the events.
void MessageLoop::RunTasks() {
  for (size_t left = tasks_.Ready(); left > 0; --left) {
    tasks_.Take()();
    CollectSignals();
    DeliverSignals();
  }
  DeliverSignals();
}

void MessageLoop::Wait() {
  NSDate* until = [NSDate distantFuture];
  if (const auto left = tasks_.UntilNext()) {
    const std::chrono::duration<double> seconds = *left;
    until = left->count() == 0 ? [NSDate distantPast]
                               : [NSDate dateWithTimeIntervalSinceNow:seconds.count()];
  }
  if (!HaveDisplay()) {
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:until];
    return;
  }
  // What AppKit has put off is done in the default mode only.
  NSEvent* event = NextEvent([NSDate distantPast], NSDefaultRunLoopMode);
  if (event == nil) event = NextEvent(until, RestMode());
  if (event == nil || [event type] == NSApplicationDefined) return;
  [NSApp sendEvent:event];
  [[NSApp mainMenu] update];
  [NSApp updateWindows];
}

void MessageLoop::OnDescriptorReadable() {
  Drain(wake_fd_);
  CollectSignals();
  if (!HaveDisplay()) return;
  if (AlertsMustEnd() && [NSApp modalWindow] != nil) [NSApp abortModal];
  PostWakeEvent();
}

void MessageLoop::CollectSignals() {
  signalfd_siginfo info;
  while (read(signal_fd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
    pending_signals_.push_back(static_cast<int>(info.ssi_signo));
    Fill(pending_fd_);
    if (holds_ > 0 && on_signal_held_) PostTask(on_signal_held_);
  }
}

void MessageLoop::DeliverSignals() {
  while (holds_ == 0 && !pending_signals_.empty()) {
    const int number = pending_signals_.front();
    pending_signals_.pop_front();
    LetAlertsStay();
    if (on_signal_) on_signal_();
    Deliver(number);
  }
}

bool MessageLoop::SignalWaits() {
  CollectSignals();
  return !pending_signals_.empty();
}

bool MessageLoop::AlertsMustEnd() { return break_alerts_ || urgent_tasks_ > 0 || SignalWaits(); }

// Unless something still wants them to end. Whoever counts an urgent task meanwhile fills it again.
void MessageLoop::LetAlertsStay() {
  if (!pending_signals_.empty() || break_alerts_) return;
  Drain(pending_fd_);
  if (urgent_tasks_ > 0) Fill(pending_fd_);
}

// What the kernel would have done, had the signal not been blocked.
void MessageLoop::Deliver(int number) {
  struct sigaction action;
  sigaction(number, nullptr, &action);
  if (action.sa_flags & SA_SIGINFO) {
    siginfo_t info = {};
    info.si_signo = number;
    action.sa_sigaction(number, &info, nullptr);
  } else if (action.sa_handler == SIG_DFL) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    raise(number);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  } else if (action.sa_handler != SIG_IGN) {
    action.sa_handler(number);
  }
}

}  // namespace engine
