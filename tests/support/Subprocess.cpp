#include "tests/support/Subprocess.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace {

// This process's environment with the changes, as execvpe takes it.
std::vector<std::string> Environment(
    const std::map<std::string, std::optional<std::string>>& changes) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry; ++entry) {
    const std::string text = *entry;
    if (!changes.count(text.substr(0, text.find('=')))) result.push_back(text);
  }
  for (const auto& [name, value] : changes) {
    if (value) result.push_back(name + "=" + *value);
  }
  return result;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// A file without a name takes any amount of output, and nobody has to read it meanwhile.
int OutputFile() {
  const int file = memfd_create("output", MFD_CLOEXEC);
  if (file < 0 || fcntl(file, F_SETFL, O_APPEND) != 0) throw std::runtime_error("no output file");
  return file;
}

std::string Content(int file) {
  std::string content(static_cast<size_t>(lseek(file, 0, SEEK_END)), '\0');
  const ssize_t size = pread(file, content.data(), content.size(), 0);
  content.resize(size < 0 ? 0 : static_cast<size_t>(size));
  return content;
}

}  // namespace

Subprocess::Subprocess(const Command& command) : output_(OutputFile()), error_(OutputFile()) {
  int in[2];
  if (pipe2(in, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  std::vector<std::string> arguments = command.arguments;
  std::vector<std::string> environment = Environment(command.environment);
  const std::vector<char*> argv = Pointers(arguments);
  const std::vector<char*> envp = Pointers(environment);
  const std::string program = command.program.empty() ? command.arguments.at(0) : command.program;
  const pid_t parent = getpid();

  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("no process");
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(126);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    dup2(in[0], STDIN_FILENO);
    dup2(output_, STDOUT_FILENO);
    dup2(error_, STDERR_FILENO);
    syscall(SYS_close_range, 3u, ~0u, CLOSE_RANGE_CLOEXEC);
    execvpe(program.c_str(), argv.data(), envp.data());
    perror(program.c_str());
    _exit(127);
  }
  close(in[0]);
  input_ = in[1];
  process_ = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));

  // Inputs of tests fit the pipe, so this does not wait for the program.
  const auto former = signal(SIGPIPE, SIG_IGN);
  const bool written = write(input_, command.input.data(), command.input.size()) >= 0;
  signal(SIGPIPE, former);
  if (!command.keep_input || !written) CloseInput();
}

Subprocess::~Subprocess() {
  Signal(SIGKILL);
  Wait(std::chrono::seconds(10));
  CloseInput();
  for (const int file : {output_, error_, process_}) close(file);
}

bool Subprocess::Signal(int number) const { return !end_ && kill(pid_, number) == 0; }

void Subprocess::CloseInput() {
  if (input_ >= 0) close(input_);
  input_ = -1;
}

std::optional<Subprocess::End> Subprocess::Wait(std::chrono::milliseconds limit) {
  pollfd ended = {process_, POLLIN, 0};
  int status = 0;
  if (!end_ && TEMP_FAILURE_RETRY(poll(&ended, 1, static_cast<int>(limit.count()))) > 0 &&
      waitpid(pid_, &status, 0) == pid_) {
    end_ = {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            WIFSIGNALED(status) ? WTERMSIG(status) : 0, out(), err()};
  }
  return end_;
}

bool Subprocess::WaitForOutput(const std::string& text, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  bool last = false;
  while (out().find(text) == std::string::npos) {
    if (last) return false;
    last = Wait(std::chrono::milliseconds(5)) || std::chrono::steady_clock::now() > end;
  }
  return true;
}

std::string Subprocess::out() const { return Content(output_); }

std::string Subprocess::err() const { return Content(error_); }

Subprocess::End RunToEnd(const Subprocess::Command& command, std::chrono::milliseconds limit) {
  Subprocess process(command);
  if (const auto end = process.Wait(limit)) return *end;
  process.Signal(SIGKILL);
  return process.Wait(std::chrono::seconds(10)).value_or(Subprocess::End());
}
