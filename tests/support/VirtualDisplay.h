// An X display of a test's own, and hands to work on it with.

#ifndef TESTS_SUPPORT_VIRTUALDISPLAY_H_
#define TESTS_SUPPORT_VIRTUALDISPLAY_H_

#include <chrono>
#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Subprocess.h"

// Starts Xvfb on a free display number and, if asked, a window manager; sets DISPLAY to it. The
// destructor ends both and restores DISPLAY. Both also end when the test process dies. Not for use
// by several threads at once.
class VirtualDisplay {
 public:
  enum class WindowManager { kNone, kOpenbox, kXfwm };

  // Returns when the display (and the window manager) is ready to serve clients. Throws
  // std::runtime_error, saying why, when that takes longer than 20 seconds or a program is missing.
  // `size` is the screen's, in pixels; `dpi` what its X resources say, if it is not 0.
  explicit VirtualDisplay(WindowManager manager = WindowManager::kNone,
                          const std::string& size = "1280x1024", int dpi = 0);
  ~VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;

  // The value of DISPLAY, such as ":3".
  const std::string& name() const { return name_; }

  bool managed() const { return window_manager_ != nullptr; }

  // Stops the server, as one that does not answer, or has it go on.
  void Hang(bool hang) const { server_->Signal(hang ? SIGSTOP : SIGCONT); }

  // What a tool did: its exit status (-1: it could not run or overran its time) and its output.
  struct ToolResult {
    int status = -1;
    std::string output;
  };

  // Runs a program on the display, for example {"wmctrl", "-c", "Sign in"}; it is killed when
  // `limit` has passed.
  ToolResult Run(const std::vector<std::string>& command,
                 std::chrono::milliseconds limit = std::chrono::seconds(10)) const;

  // Runs xdotool with the arguments given.
  ToolResult Xdotool(std::vector<std::string> arguments) const;

  // Waits until a visible window whose title matches the regular expression exists; returns the id
  // as xdotool takes it, or an empty text when `limit` has passed.
  std::string WaitForWindow(const std::string& title_pattern,
                            std::chrono::milliseconds limit = std::chrono::seconds(10)) const;

 private:
  std::unique_ptr<Subprocess> server_;
  std::unique_ptr<Subprocess> window_manager_;
  std::string name_;
  std::optional<std::string> former_display_;
};

#endif  // TESTS_SUPPORT_VIRTUALDISPLAY_H_
