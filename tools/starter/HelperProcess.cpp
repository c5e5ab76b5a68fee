#include "tools/starter/HelperProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <stdexcept>

#include "tools/starter/SignalPipe.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kProgressEvery{1000};

// A pipe whose ends no executed program inherits.
class Pipe {
 public:
  Pipe() {
    if (pipe(ends_) != 0) throw std::runtime_error("no pipe");
    for (const int end : ends_) fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  ~Pipe() {
    for (int i = 0; i < 2; ++i) CloseEnd(i);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends_[0]; }
  int writer() const { return ends_[1]; }
  void CloseReader() { CloseEnd(0); }
  void CloseWriter() { CloseEnd(1); }

 private:
  void CloseEnd(int i) {
    if (ends_[i] != -1) close(ends_[i]);
    ends_[i] = -1;
  }
  int ends_[2];
};

void DefaultSignals() {
  for (const int number : {SIGCHLD, SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction now;
    sigaction(number, nullptr, &now);
    if (now.sa_handler != SIG_IGN) signal(number, SIG_DFL);
  }
}

// In the child; only calls that are allowed between fork and exec in a threaded process.
[[noreturn]] void Execute(const char* program, char* const* arguments, int report) {
  DefaultSignals();
  setpgid(0, 0);
  const int nothing = open("/dev/null", O_RDONLY);
  if (nothing > STDIN_FILENO) {
    dup2(nothing, STDIN_FILENO);
    close(nothing);
  }
  dup2(STDERR_FILENO, STDOUT_FILENO);
  execv(program, arguments);
  const int error = errno;
  if (write(report, &error, sizeof error) < 0) _exit(126);
  _exit(127);
}

pid_t Start(const std::string& program, const std::string& argument, int& error) {
  Pipe report;
  char* arguments[] = {const_cast<char*>(argument.c_str()), nullptr};
  const pid_t child = fork();
  if (child == 0) Execute(program.c_str(), arguments, report.writer());
  error = child < 0 ? errno : 0;
  report.CloseWriter();
  if (child > 0 && read(report.reader(), &error, sizeof error) > 0) waitpid(child, nullptr, 0);
  return error ? -1 : child;
}

// A process that sends the helper SIGTERM when this one is gone without having said so. Works
// wherever there are pipes, and also when this process was killed by SIGKILL.
class Guard {
 public:
  explicit Guard(pid_t helper) {
    process_ = fork();
    if (process_ == 0) Watch(helper);
    alive_.CloseReader();
  }
  // To be called when the helper has been reaped: its number may then belong to another.
  ~Guard() {
    if (process_ < 0) return;
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
  }

 private:
  [[noreturn]] void Watch(pid_t helper) {
    for (const int number : {SIGHUP, SIGINT, SIGTERM}) signal(number, SIG_IGN);
    close(alive_.writer());
    char byte;
    while (read(alive_.reader(), &byte, 1) < 0 && errno == EINTR) continue;
    kill(helper, SIGTERM);
    _exit(0);
  }
  Pipe alive_;
  pid_t process_;
};

bool Reaped(pid_t child, HelperEnd& end) {
  int status = 0;
  if (waitpid(child, &status, WNOHANG) != child) return false;
  if (WIFEXITED(status)) end.exit_status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) end.killed_by = WTERMSIG(status);
  return true;
}

// Waits for the end, and brings it about when a limit has passed.
void Await(pid_t child, const HelperLimits& limits, const Progress& progress,
           const SignalPipe& signals, HelperEnd& end) {
  const Clock::time_point begin = Clock::now();
  std::optional<Clock::time_point> deadline = begin + limits.time;
  bool ending = false;
  while (!Reaped(child, end)) {
    milliseconds wait = std::chrono::hours(1);
    if (deadline) wait = std::chrono::ceil<milliseconds>(*deadline - Clock::now());
    if (progress) wait = std::min(wait, kProgressEvery);
    const int signal_number = signals.Wait(wait);
    if (signal_number != 0 && signal_number != SIGCHLD) {
      end.stopped_by = signal_number;
      kill(child, signal_number);
      if (!ending) deadline = Clock::now() + limits.grace;
      ending = true;
    } else if (deadline && Clock::now() >= *deadline) {
      kill(child, ending ? SIGKILL : SIGTERM);
      if (!ending) end.timed_out = true;
      deadline = ending ? std::nullopt : std::optional(Clock::now() + limits.grace);
      ending = true;
    }
    if (progress) progress(std::chrono::duration_cast<milliseconds>(Clock::now() - begin));
  }
  end.duration = std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

}  // namespace

HelperEnd RunHelper(const std::string& program, const std::string& argument,
                    const HelperLimits& limits, const Progress& progress) {
  HelperEnd end;
  const SignalPipe signals;
  const pid_t child = Start(program, argument, end.start_error);
  end.pid = child;
  if (child < 0) return end;
  const Guard guard(child);
  Await(child, limits, progress, signals, end);
  return end;
}
