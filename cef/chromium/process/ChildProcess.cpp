#include "cef/chromium/process/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "cef/chromium/process/ChildEnvironment.h"

namespace engine {

namespace {

// Above every number a child uses, so that no descriptor is overwritten before it was copied (a
// pipe may itself have been given the numbers 3 and 4).
constexpr int kOutOfTheWay = 32;

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

pid_t StartChild(const ChildOptions& options, std::string* err) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);

  std::vector<int> copies;
  int last = STDERR_FILENO;
  bool ready = true;
  // Not closed: the first files that the child opens would get these numbers.
  for (int fd = 0; fd <= STDERR_FILENO; ++fd) {
    posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
  }
  for (const auto& [ours, theirs] : options.descriptors) {
    const int copy = fcntl(ours, F_DUPFD_CLOEXEC, kOutOfTheWay);
    if (copy < 0) ready = false;
    copies.push_back(copy);
    posix_spawn_file_actions_adddup2(&actions, copy, theirs);
    last = std::max(last, theirs);
  }
  // Not all that we have is close-on-exec: some we have inherited ourselves.
  posix_spawn_file_actions_addclosefrom_np(&actions, last + 1);
  posix_spawn_file_actions_addchdir_np(&actions, "/");

  // This process blocks some signals and ignores others; a child would inherit both.
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  const std::vector<std::string> environment = ChildEnvironment(options.environment);
  pid_t child = -1;
  int error = EMFILE;
  if (ready) {
    error = posix_spawn(&child, options.command[0].c_str(), &actions, &attributes,
                        Pointers(options.command).data(), Pointers(environment).data());
  }
  for (int copy : copies) {
    if (copy >= 0) close(copy);
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error == 0) return child;
  *err = "cannot start " + options.command[0] + ": " + strerror(error);
  return -1;
}

int OpenProcess(pid_t child) { return static_cast<int>(syscall(SYS_pidfd_open, child, 0)); }

int ReapChild(pid_t child) {
  int status = -1;
  pid_t result;
  do {
    result = waitpid(child, &status, 0);
  } while (result < 0 && errno == EINTR);
  return result == child ? status : -1;
}

}  // namespace engine
