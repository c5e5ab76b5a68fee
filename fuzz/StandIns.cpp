#include "fuzz/StandIns.h"

#include <poll.h>

#include <chrono>
#include <deque>
#include <map>
#include <utility>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/base/Say.h"
#include "cef/chromium/process/Launch.h"
#include "cef/chromium/process/WindowServer.h"
#include "fuzz/Fuzz.h"
#include "platform/IconPixels.h"

namespace {

using engine::Task;

// The clock of the whole program.
int64_t g_now_ms = 1000000;

struct Tasks {
  bool Run() {
    for (; !timers.empty() && timers.begin()->first <= g_now_ms; timers.erase(timers.begin())) {
      ready.push_back(std::move(timers.begin()->second));
    }
    const bool any = !ready.empty();
    for (size_t left = ready.size(); left > 0; --left) {
      const Task task = std::move(ready.front());
      ready.pop_front();
      task();
    }
    return any;
  }

  std::deque<Task> ready;
  std::multimap<int64_t, Task> timers;
};

enum class Thread { kUi, kIo };

Thread g_thread = Thread::kUi;
Tasks g_ui, g_io;
int g_holds = 0;
int g_pipe[2] = {-1, -1};
std::map<int, std::pair<short, engine::IoThread::ReadyHandler>> g_watched;
engine::WindowServer::WindowHandler g_came, g_gone;

}  // namespace

namespace std::chrono {
inline namespace _V2 {
steady_clock::time_point steady_clock::now() noexcept { return time_point(milliseconds(g_now_ms)); }
}  // namespace _V2
}  // namespace std::chrono

namespace standins {

void UsePipe(int write_fd, int read_fd) {
  g_pipe[0] = write_fd;
  g_pipe[1] = read_fd;
}

bool RunUi() {
  g_thread = Thread::kUi;
  return g_ui.Run();
}

bool RunIo() {
  g_thread = Thread::kIo;
  bool any = g_io.Run();
  for (auto watch = g_watched.begin(); watch != g_watched.end();) {
    pollfd one = {watch->first, watch->second.first, 0};
    if (poll(&one, 1, 0) > 0) {
      const auto ready = watch->second.second;
      ready(one.revents);
      any = true;
    }
    watch = g_watched.upper_bound(one.fd);
  }
  g_thread = Thread::kUi;
  return any;
}

void Settle() {
  int turns = 0;
  for (bool more = true; more;) {
    more = RunIo();
    more = RunUi() || more;
    Require(++turns < 10000);
  }
}

void Advance(int64_t ms) { g_now_ms += ms; }

int64_t UntilNext() {
  int64_t next = -1;
  for (const Tasks* tasks : {&g_ui, &g_io}) {
    if (tasks->timers.empty()) continue;
    const int64_t left = std::max<int64_t>(0, tasks->timers.begin()->first - g_now_ms);
    next = next < 0 ? left : std::min(next, left);
  }
  return next;
}

int Holds() { return g_holds; }
void WindowComes(uint32_t window) { g_came(window); }
void WindowGoes(uint32_t window) { g_gone(window); }

void Clear() {
  g_watched.clear();
  // What goes may post once more.
  for (int i = 0; i < 3; ++i) {
    Tasks ui, io;
    std::swap(ui, g_ui);
    std::swap(io, g_io);
  }
  g_holds = 0;
}

}  // namespace standins

std::vector<uint32_t> IconPixels(const std::string&) { return {}; }

namespace engine {

void Say(const std::string&) {}

IoThread& IoThread::Get() {
  static IoThread* thread = new IoThread;
  return *thread;
}
bool IoThread::Start() { return true; }
bool IoThread::OnIoThread() const { return g_thread == Thread::kIo; }
bool IoThread::PostTask(Task task) {
  g_io.ready.push_back(std::move(task));
  return true;
}
bool IoThread::PostDelayedTask(Task task, int64_t ms) {
  g_io.timers.emplace(g_now_ms + ms, std::move(task));
  return true;
}
void IoThread::Watch(int fd, short events, ReadyHandler ready) {
  g_watched[fd] = {events, std::move(ready)};
}
void IoThread::Unwatch(int fd) { g_watched.erase(fd); }

MessageLoop& MessageLoop::Get() {
  static MessageLoop* loop = new MessageLoop;
  return *loop;
}
bool MessageLoop::Init() { return true; }
void MessageLoop::Run() {}
void MessageLoop::Quit() {}
bool MessageLoop::AwaitReadable(int, Clock::time_point) { return false; }
void MessageLoop::GuardSignals() {}
void MessageLoop::HandOverSignals() {}
bool MessageLoop::DisplayIsLost() const { return false; }
void MessageLoop::BreakAlerts() {}
bool MessageLoop::PostTask(Task task) {
  g_ui.ready.push_back(std::move(task));
  return true;
}
bool MessageLoop::PostDelayedTask(Task task, int64_t ms) {
  g_ui.timers.emplace(g_now_ms + ms, std::move(task));
  return true;
}
bool MessageLoop::PostUrgentTask(Task task) { return PostTask(std::move(task)); }
bool MessageLoop::OnUiThread() const { return g_thread == Thread::kUi; }
void MessageLoop::HoldSignals() { ++g_holds; }
void MessageLoop::ReleaseSignals() { --g_holds; }
bool MessageLoop::SignalWaits() { return false; }
bool MessageLoop::AlertsMustEnd() { return false; }

bool Launch::Start(const std::string&, const Switches&, const std::function<void()>& enable,
                   std::string*) {
  connection_.Open(g_pipe[0], g_pipe[1]);
  enable();
  return true;
}
void Launch::End() {}
std::string Launch::LastWords() const { return ""; }

void WindowServer::OnWindow(WindowHandler came, WindowHandler gone) {
  g_came = std::move(came);
  g_gone = std::move(gone);
}
void WindowServer::Start() {}
void WindowServer::SetIcon(std::vector<uint32_t>) {}
void WindowServer::SetTitle(Window, const std::string&) {}
void WindowServer::Centre(Window) {}
void WindowServer::PutBeside(Window, Window) {}

}  // namespace engine
