// The order matters: nothing may outlive the caller, and no signal may hit the wrong process.
//
// 0. RunStep() has put an empty segment of the caller's own in place of an old one.
// 1. All signals are blocked. One that ended the caller between steps 2 and 3 would leave a
//    helper that nobody ends, and the child must not run the caller's handlers.
// 2. Pipes, texts and the thread that passes on the helper's standard error are made; then comes
//    fork. The child leads a process group, out of reach of Ctrl-C, and waits for a byte.
// 3. A thread waits for its end, another process, CallerWatch, for the caller's. Then the child
// gets its byte,
//    resets its signals, drops the caller's descriptors and becomes the helper. A pipe that a
//    successful exec closes carries the errno of one that fails.
// 4. Signals are unblocked. At the limit the helper gets SIGTERM, before that what a StopSwitch
//    passes on. The first signal begins the grace, which SIGKILL ends.
// 5. The helper is reaped, CallerWatch ended, the rest of its standard error read. Only then does
//    RunStep() read the segment, which the helper writes last, and remove it.

#include "tools/starter/HelperProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>
#include <vector>

#include "tools/starter/CallerWatch.h"
#include "tools/starter/ErrorOutput.h"
#include "tools/starter/Pipe.h"

extern char** environ;

namespace ebStarter {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kProgressEvery{1000};
// One past the highest signal's number on every system.
constexpr int kSignalsEnd = 65;

class AllSignalsBlocked {
 public:
  AllSignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former_);
  }
  ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

 private:
  sigset_t former_;
};

// What execve() takes, made before fork().
struct Image {
  explicit Image(const Settings& settings)
      : program(settings.program),
        argument(settings.request.ToJson()),
        home("HOME=" + settings.home),
        arguments{argument.data(), nullptr} {
    for (char** entry = environ; entry && *entry; ++entry) {
      if (std::string(*entry).rfind("HOME=", 0) != 0) environment.push_back(*entry);
    }
    environment.insert(environment.end(), {home.data(), nullptr});
  }
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  std::string program;
  std::string argument;
  std::string home;
  char* arguments[2];
  std::vector<char*> environment;
  int descriptors_end = DescriptorsEnd();
};

// The caller's handlers must not run in the child; what it ignores stays ignored, but for the two
// that programs rely on.
void ResetSignals() {
  for (int number = 1; number < kSignalsEnd; ++number) {
    struct sigaction now;
    if (sigaction(number, nullptr, &now) != 0) continue;
    const bool kept = now.sa_handler == SIG_IGN && number != SIGCHLD && number != SIGPIPE;
    if (!kept) signal(number, SIG_DFL);
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

// The child between fork and exec.
struct Birth {
  Pipe go;      // it waits for a byte from here: CallerWatch comes first
  Pipe report;  // takes what keeps the program from being executed
};

[[noreturn]] void Fail(const Birth& birth) {
  const int error = errno;
  if (write(birth.report.writer(), &error, sizeof error) < 0) _exit(126);
  _exit(127);
}

// In the child; only calls that are allowed between fork and exec in a process with threads.
[[noreturn]] void Execute(const Image& image, int output, Birth& birth) {
  setpgid(0, 0);
  birth.go.CloseWriter();
  char byte;
  const ssize_t went = read(birth.go.reader(), &byte, 1);
  if (went == 0) _exit(126);  // the caller has died
  if (went < 0) Fail(birth);
  ResetSignals();
  const int nothing = open("/dev/null", O_RDONLY);
  if (nothing > STDIN_FILENO) dup2(nothing, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  CloseDescriptors(STDERR_FILENO + 1, image.descriptors_end, birth.report.writer());
  execve(image.program.c_str(), image.arguments, image.environment.data());
  Fail(birth);
}

// Lets it become the helper; returns the errno that keeps it from that, or 0.
int LetGo(Birth& birth) {
  if (write(birth.go.writer(), "", 1) != 1) return errno;
  birth.go.CloseReader();
  birth.report.CloseWriter();
  int error = 0;
  return read(birth.report.reader(), &error, sizeof error) > 0 ? error : 0;
}

// The helper from its start to its reaping. Only the owner's thread reaps and sends signals, so
// that no signal goes to another process with the same number.
class Child {
 public:
  explicit Child(pid_t pid) : pid_(pid) {
    try {
      waiter_ = std::thread([this] { Wait(); });
    } catch (...) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
      throw;
    }
  }
  ~Child() {
    if (!reaped_) kill(pid_, SIGKILL);
    waiter_.join();
    if (!reaped_) waitpid(pid_, nullptr, 0);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Readable when it has ended.
  int ended() const { return ended_.reader(); }
  void Signal(int number) const { kill(pid_, number); }

  // To be called when it has ended.
  void Reap(HelperEnd& end) {
    int status = 0;
    const bool known = waitpid(pid_, &status, 0) == pid_;
    reaped_ = true;
    if (known && WIFEXITED(status)) end.exit_status = WEXITSTATUS(status);
    if (known && WIFSIGNALED(status)) end.killed_by = WTERMSIG(status);
  }

 private:
  void Wait() {
    siginfo_t information;
    while (waitid(P_PID, static_cast<id_t>(pid_), &information, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
      continue;
    }
    ended_.CloseWriter();
  }

  const pid_t pid_;
  bool reaped_ = false;
  Pipe ended_;
  std::thread waiter_;
};

// Keeps sums with the clock, and poll()'s milliseconds, in range.
Limits Sensible(const Limits& limits) {
  constexpr milliseconds kLongest{std::chrono::hours(24 * 7)};
  return {std::min(limits.time, kLongest), std::min(limits.grace, kLongest)};
}

// Waits for the end, and brings it about when a limit has passed.
void Await(Child& child, const Limits& limits, const Progress& progress, int stop, HelperEnd& end) {
  const Clock::time_point begin = Clock::now();
  const auto elapsed = [begin] {
    return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
  };
  std::optional<Clock::time_point> deadline = begin + limits.time;
  bool ending = false;
  pollfd watched[] = {{child.ended(), POLLIN, 0}, {stop, POLLIN, 0}};
  for (;;) {
    if (progress) progress(elapsed());
    milliseconds wait = std::chrono::hours(1);
    if (deadline) wait = std::min(wait, std::chrono::ceil<milliseconds>(*deadline - Clock::now()));
    if (progress) wait = std::min(wait, kProgressEvery);
    const int ready = poll(watched, 2, static_cast<int>(std::max<long long>(wait.count(), 0)));
    if (ready > 0 && watched[0].revents) break;
    unsigned char number = 0;
    if (ready > 0 && watched[1].revents && read(stop, &number, 1) == 1) {
      end.stopped_by = number;
      child.Signal(number);
      if (!ending) deadline = Clock::now() + limits.grace;
      ending = true;
    } else if (deadline && Clock::now() >= *deadline) {
      child.Signal(ending ? SIGKILL : SIGTERM);
      if (!ending) end.timed_out = true;
      deadline = ending ? std::nullopt : std::optional(Clock::now() + limits.grace);
      ending = true;
    }
  }
  child.Reap(end);
  end.duration = elapsed();
}

}  // namespace

HelperEnd RunHelper(const Settings& settings, int stop) {
  HelperEnd end;
  const Limits limits = Sensible(settings.limits);
  std::optional<AllSignalsBlocked> blocked(std::in_place);
  ErrorOutput output;
  Birth birth;
  const Image image(settings);
  const pid_t pid = fork();
  if (pid == 0) Execute(image, output.writer(), birth);
  if (pid < 0) {
    end.start_error = errno;
    return end;
  }
  setpgid(pid, pid);
  Child child(pid);
  std::optional<CallerWatch> watch(std::in_place, pid, output.reader(), limits.grace);
  output.CloseWriter();
  end.start_error = LetGo(birth);
  if (end.start_error) return end;
  blocked.reset();
  end.pid = pid;
  Await(child, limits, settings.progress, stop, end);
  watch.reset();
  const LastLines& lines = output.Finish();
  end.last_line = lines.last();
  end.browser_failure = lines.browser_failure();
  end.browser_remark = lines.browser_remark();
  return end;
}

}  // namespace ebStarter
