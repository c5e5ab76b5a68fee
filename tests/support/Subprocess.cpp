#include "tests/support/Subprocess.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
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

void MakePipe(int ends[2]) {
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
}

void CloseAll(std::initializer_list<int> descriptors) {
  for (const int descriptor : descriptors) {
    if (descriptor >= 0) close(descriptor);
  }
}

}  // namespace

Subprocess::Subprocess(const Command& command) {
  int in[2], out[2], err[2], report[2];
  MakePipe(in);
  MakePipe(out);
  MakePipe(err);
  MakePipe(report);
  std::vector<std::string> arguments = command.arguments;
  std::vector<std::string> environment = Environment(command.environment);
  const std::vector<char*> argv = Pointers(arguments);
  const std::vector<char*> envp = Pointers(environment);
  const std::string program = command.program.empty() ? command.arguments.at(0) : command.program;
  const pid_t parent = getpid();

  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(126);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    dup2(in[0], STDIN_FILENO);
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    syscall(SYS_close_range, 3u, ~0u, CLOSE_RANGE_CLOEXEC);
    if (command.folder.empty() || chdir(command.folder.c_str()) == 0) {
      execvpe(program.c_str(), argv.data(), envp.data());
    }
    const int error = errno;
    if (write(report[1], &error, sizeof error) < 0) _exit(126);
    _exit(127);
  }
  CloseAll({in[0], out[1], err[1], report[1]});
  int error = pid_ < 0 ? errno : 0;
  if (pid_ > 0 && read(report[0], &error, sizeof error) > 0) waitpid(pid_, nullptr, 0);
  close(report[0]);
  if (error) {
    CloseAll({in[1], out[0], err[0]});
    throw std::runtime_error("cannot execute " + program + ": " + std::strerror(error));
  }
  input_ = in[1];
  output_ = out[0];
  error_ = err[0];
  fcntl(output_, F_SETFL, O_NONBLOCK);
  fcntl(error_, F_SETFL, O_NONBLOCK);
  process_ = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
  stop_ = eventfd(0, EFD_CLOEXEC);
  // Signals of the process are for the thread that is tested.
  sigset_t all, former_mask;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former_mask);
  collector_ = std::thread([this] { Collect(); });
  pthread_sigmask(SIG_SETMASK, &former_mask, nullptr);

  // Inputs of tests fit the pipe, so this does not wait for the program.
  const auto former = signal(SIGPIPE, SIG_IGN);
  const bool written = write(input_, command.input.data(), command.input.size()) >= 0;
  signal(SIGPIPE, former);
  if (!command.keep_input || !written) CloseInput();
}

Subprocess::~Subprocess() {
  Signal(SIGKILL);
  if (!Wait(std::chrono::seconds(10))) {
    const uint64_t one = 1;
    if (write(stop_, &one, sizeof one) < 0) std::terminate();
  }
  collector_.join();
  CloseAll({input_, output_, error_, process_, stop_});
}

bool Subprocess::Signal(int number) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return !ended_ && kill(pid_, number) == 0;
}

void Subprocess::CloseInput() {
  CloseAll({input_});
  input_ = -1;
}

std::optional<Subprocess::End> Subprocess::Wait(std::chrono::milliseconds limit) {
  std::unique_lock<std::mutex> lock(mutex_);
  if (!changed_.wait_for(lock, limit, [this] { return ended_; })) return std::nullopt;
  return end_;
}

bool Subprocess::WaitForText(const std::string& text, const std::string& in,
                             std::chrono::milliseconds limit) {
  std::unique_lock<std::mutex> lock(mutex_);
  const auto found = [&] { return in.find(text) != std::string::npos; };
  changed_.wait_for(lock, limit, [&] { return found() || ended_; });
  return found();
}

bool Subprocess::WaitForOutput(const std::string& text, std::chrono::milliseconds limit) {
  return WaitForText(text, end_.out, limit);
}

bool Subprocess::WaitForError(const std::string& text, std::chrono::milliseconds limit) {
  return WaitForText(text, end_.err, limit);
}

std::string Subprocess::out() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return end_.out;
}

std::string Subprocess::err() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return end_.err;
}

void Subprocess::Drain(int descriptor, std::string& into) {
  char bytes[4096];
  ssize_t count;
  while ((count = read(descriptor, bytes, sizeof bytes)) > 0) {
    const std::lock_guard<std::mutex> lock(mutex_);
    into.append(bytes, static_cast<size_t>(count));
  }
}

// The thread's work: both outputs until the program has ended. What children of the program still
// hold open is not waited for.
void Subprocess::Collect() {
  pollfd watched[] = {
      {output_, POLLIN, 0}, {error_, POLLIN, 0}, {process_, POLLIN, 0}, {stop_, POLLIN, 0}};
  while (!watched[2].revents && !watched[3].revents) {
    if (poll(watched, 4, -1) < 0) continue;
    Drain(output_, end_.out);
    Drain(error_, end_.err);
    for (int i = 0; i < 2; ++i) {
      if (watched[i].revents & (POLLHUP | POLLERR)) watched[i].fd = -1;
    }
    changed_.notify_all();
  }
  Drain(output_, end_.out);
  Drain(error_, end_.err);
  const std::lock_guard<std::mutex> lock(mutex_);
  int status = 0;
  if (watched[2].revents && waitpid(pid_, &status, 0) == pid_) {
    if (WIFEXITED(status)) end_.exit_status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) end_.signal = WTERMSIG(status);
  }
  ended_ = true;
  changed_.notify_all();
}

Subprocess::End RunToEnd(const Subprocess::Command& command, std::chrono::milliseconds limit) {
  Subprocess process(command);
  if (const auto end = process.Wait(limit)) return *end;
  process.Signal(SIGKILL);
  return process.Wait(std::chrono::seconds(10)).value_or(Subprocess::End());
}
