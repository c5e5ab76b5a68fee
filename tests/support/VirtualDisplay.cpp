#include "tests/support/VirtualDisplay.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds kStartLimit = std::chrono::seconds(20);
constexpr milliseconds kEndLimit = std::chrono::seconds(3);

int Left(Clock::time_point end) {
  const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

bool Readable(int fd, Clock::time_point end) {
  pollfd watched = {fd, POLLIN, 0};
  int count;
  do {
    count = poll(&watched, 1, Left(end));
  } while (count < 0 && errno == EINTR);
  return count > 0;
}

// Starts a program that ends with this process. `output` becomes its standard output and error;
// without one (-1) it is silent. `kept` stays open in it.
pid_t Start(const std::vector<std::string>& command, int output, int kept) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  if (output < 0) output = open("/dev/null", O_WRONLY);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  if (kept >= 0) fcntl(kept, F_SETFD, 0);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

// Waits for a child, and kills it when `end` has passed. Returns its exit status, or -1.
int Reap(pid_t child, Clock::time_point end) {
  const int fd = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
  const bool ended = fd >= 0 && Readable(fd, end);
  if (fd >= 0) close(fd);
  if (!ended) kill(child, SIGKILL);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return ended && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void EndChild(pid_t* child) {
  if (*child <= 0) return;
  kill(*child, SIGTERM);
  Reap(*child, Clock::now() + kEndLimit);
  *child = -1;
}

std::string ReadUntil(int fd, char stop, Clock::time_point end) {
  std::string text;
  char c;
  while (Readable(fd, end) && read(fd, &c, 1) == 1 && c != stop) text += c;
  return text;
}

bool HasWindowManager(Display* display, Atom check) {
  Atom type = None;
  int format = 0;
  unsigned long count = 0, left = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), check, 0, 1, False, XA_WINDOW, &type,
                     &format, &count, &left, &value);
  if (value) XFree(value);
  return count == 1;
}

}  // namespace

VirtualDisplay::VirtualDisplay(WindowManager manager) {
  if (const char* display = getenv("DISPLAY")) {
    had_display_ = true;
    former_display_ = display;
  }
  try {
    StartServer();
    setenv("DISPLAY", name_.c_str(), 1);
    if (manager == WindowManager::kOpenbox) StartOpenbox();
  } catch (...) {
    End();
    throw;
  }
}

VirtualDisplay::~VirtualDisplay() { End(); }

void VirtualDisplay::End() {
  EndChild(&window_manager_);
  EndChild(&server_);
  if (had_display_) {
    setenv("DISPLAY", former_display_.c_str(), 1);
  } else {
    unsetenv("DISPLAY");
  }
}

void VirtualDisplay::StartServer() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
  server_ = Start({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", "1280x1024x24",
                   "-nolisten", "tcp", "-noreset"},
                  -1, ends[1]);
  close(ends[1]);
  const std::string number = ReadUntil(ends[0], '\n', Clock::now() + kStartLimit);
  close(ends[0]);
  if (server_ < 0 || number.empty()) throw std::runtime_error("Xvfb did not start");
  name_ = ":" + number;
}

void VirtualDisplay::StartOpenbox() {
  const auto end = Clock::now() + kStartLimit;
  Display* display = XOpenDisplay(name_.c_str());
  if (!display) throw std::runtime_error("cannot reach Xvfb");
  const Atom check = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
  XSelectInput(display, DefaultRootWindow(display), PropertyChangeMask);
  window_manager_ = Start({"openbox", "--sm-disable"}, -1, -1);
  bool ready = false;
  while (!(ready = HasWindowManager(display, check))) {
    if (XPending(display) == 0 && !Readable(ConnectionNumber(display), end)) break;
    while (XPending(display) > 0) {
      XEvent ignored;
      XNextEvent(display, &ignored);
    }
  }
  XCloseDisplay(display);
  if (!ready) throw std::runtime_error("openbox did not start");
}

VirtualDisplay::ToolResult VirtualDisplay::Run(const std::vector<std::string>& command,
                                               milliseconds limit) const {
  const auto end = Clock::now() + limit;
  ToolResult result;
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return result;
  const pid_t child = Start(command, ends[1], -1);
  close(ends[1]);
  result.output = ReadUntil(ends[0], '\0', end);
  close(ends[0]);
  if (child > 0) result.status = Reap(child, end);
  return result;
}

VirtualDisplay::ToolResult VirtualDisplay::Xdotool(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), "xdotool");
  return Run(arguments);
}

std::string VirtualDisplay::WaitForWindow(const std::string& title_pattern,
                                          milliseconds limit) const {
  // The search fails when a window goes away under its eyes, so it may take several.
  const auto end = Clock::now() + limit;
  while (Clock::now() < end) {
    const ToolResult found =
        Run({"xdotool", "search", "--sync", "--onlyvisible", "--name", title_pattern},
            milliseconds(Left(end)));
    if (found.status == 0) return found.output.substr(0, found.output.find('\n'));
    std::this_thread::sleep_for(milliseconds(20));
  }
  return {};
}
