#include "tools/gateway/RunCommand.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

int RunCommand(const std::string& command, int signals) {
  const std::string line = "exec " + command;
  const pid_t box = getpid();
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child == 0) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() == box) execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  while (waitpid(child, &status, WNOHANG) != child) {
    signalfd_siginfo come;
    if (read(signals, &come, sizeof come) == sizeof come && come.ssi_signo != SIGCHLD) {
      kill(child, SIGTERM);
    }
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
