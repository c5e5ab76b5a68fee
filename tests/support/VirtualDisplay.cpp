#include "tests/support/VirtualDisplay.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

namespace {

constexpr milliseconds kStartLimit = std::chrono::seconds(20);
constexpr milliseconds kEndLimit = std::chrono::seconds(3);

std::unique_ptr<Subprocess> Start(const std::vector<std::string>& arguments) {
  Subprocess::Command command;
  command.arguments = arguments;
  return std::make_unique<Subprocess>(command);
}

// The server removes its socket when it is asked to end.
void End(std::unique_ptr<Subprocess>& program) {
  if (!program) return;
  program->Signal(SIGTERM);
  program->Wait(kEndLimit);
  program.reset();
}

}  // namespace

VirtualDisplay::VirtualDisplay(WindowManager manager, const std::string& size, int dpi) {
  if (const char* display = getenv("DISPLAY")) former_display_ = display;
  // Who has lost a display must not find another one in its place: of the free numbers that servers
  // choose, the next one takes the same again.
  static int number = 1000 + getpid() % 5000 * 10;
  const auto limit = Clock::now() + kStartLimit;
  do {
    if (Clock::now() > limit) throw std::runtime_error("Xvfb did not start");
    server_ = Start({"Xvfb", ":" + std::to_string(number++), "-displayfd", "1", "-screen", "0",
                     size + "x24", "-nolisten", "tcp", "-noreset"});
  } while (!server_->WaitForOutput("\n", kStartLimit));
  name_ = ":" + server_->out().substr(0, server_->out().find('\n'));
  setenv("DISPLAY", name_.c_str(), 1);
  if (dpi != 0) {
    Run({"xprop", "-root", "-format", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER",
         "Xft.dpi:\t" + std::to_string(dpi)});
  }
  if (manager == WindowManager::kNone) return;
  const bool openbox = manager == WindowManager::kOpenbox;
  window_manager_ = openbox ? Start({"openbox", "--sm-disable"})
                            : Start({"dbus-run-session", "--", "xfwm4", "--compositor=off"});
  const auto end = Clock::now() + kStartLimit;
  while (Run({"wmctrl", "-m"}).status != 0) {
    if (Clock::now() > end) throw std::runtime_error("no window manager");
  }
}

VirtualDisplay::~VirtualDisplay() {
  End(window_manager_);
  End(server_);
  if (former_display_) {
    setenv("DISPLAY", former_display_->c_str(), 1);
  } else {
    unsetenv("DISPLAY");
  }
}

VirtualDisplay::ToolResult VirtualDisplay::Run(const std::vector<std::string>& command,
                                               milliseconds limit) const {
  Subprocess::Command tool;
  tool.arguments = command;
  const Subprocess::End end = RunToEnd(tool, limit);
  return {end.exit_status, end.out + end.err};
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
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
    const ToolResult found =
        Run({"xdotool", "search", "--sync", "--onlyvisible", "--name", title_pattern}, left);
    if (found.status == 0) return found.output.substr(0, found.output.find('\n'));
    std::this_thread::sleep_for(milliseconds(20));
  }
  return {};
}
