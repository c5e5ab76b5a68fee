#include "tools/tape/LevelKeeper.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "tools/log/ControlBlock.h"

namespace tape {

namespace {

constexpr char kRaised = '+';
constexpr char kTakenAway[] = "the log's control block has been taken away";

// Neither end is inherited by executed programs. Throws std::runtime_error.
void MakePipe(int ends[2]) {
  if (pipe(ends) != 0) throw std::runtime_error(strerror(errno));
  for (const int end : {ends[0], ends[1]}) fcntl(end, F_SETFD, FD_CLOEXEC);
}

void Say(int report, const std::string& text) {
  // Who reads it may be gone.
  [[maybe_unused]] const ssize_t written = write(report, text.data(), text.size());
}

// What the process does.
[[noreturn]] void Keep(int level, int hold, int report) {
  // Out of reach of what a terminal sends to the process group.
  setsid();
  for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) signal(number, SIG_IGN);
  signal(SIGBUS, SIG_DFL);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(descriptor);
  int former = 0;
  std::string problem = log_reader::ReadLevel(former);
  if (problem.empty() && former < level) problem = log_reader::SetLevel(level);
  if (!problem.empty()) {
    Say(report, problem);
    _exit(0);
  }
  Say(report, std::string(1, kRaised));
  char none;
  while (read(hold, &none, 1) < 0 && errno == EINTR) continue;
  int now = 0;
  problem = log_reader::ReadLevel(now);
  if (problem.empty() && now != level && former < level) {
    problem = "somebody has set it to " + std::to_string(now) + " meanwhile";
  } else if (problem.empty() && former < level) {
    problem = log_reader::SetLevel(former);
  }
  Say(report, problem);
  _exit(0);
}

}  // namespace

LevelKeeper::LevelKeeper(int level) {
  int hold[2], report[2];
  MakePipe(hold);
  MakePipe(report);
  hold_ = hold[1];
  report_ = report[0];
  process_ = fork();
  if (process_ == 0) {
    close(hold[1]);
    close(report[0]);
    Keep(level, hold[0], report[1]);
  }
  close(hold[0]);
  close(report[1]);
  char raised = 0;
  ssize_t count;
  while ((count = read(report_, &raised, 1)) < 0 && errno == EINTR) continue;
  if (count == 1 && raised == kRaised) return;
  const std::string rest = Release();
  throw std::runtime_error(count == 1 ? raised + rest : kTakenAway);
}

std::string LevelKeeper::Release() {
  if (hold_ == -1) return "";
  close(hold_);
  hold_ = -1;
  std::string text;
  char bytes[256];
  for (;;) {
    const ssize_t count = read(report_, bytes, sizeof bytes);
    if (count > 0) text.append(bytes, static_cast<size_t>(count));
    if (count == 0 || (count < 0 && errno != EINTR)) break;
  }
  close(report_);
  int status = 0;
  while (process_ > 0 && waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
  return WIFSIGNALED(status) ? kTakenAway : text;
}

}  // namespace tape
