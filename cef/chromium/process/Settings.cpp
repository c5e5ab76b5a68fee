#include "cef/chromium/process/Settings.h"

#include <algorithm>
#include <string>

namespace engine {
namespace {

constexpr int kLowestDebuggingPort = 1024;
constexpr int kHighestDebuggingPort = 65535;

// Information is the lowest level that there is no way to: the texts that pages write to their
// console have it, of which there can be any number.
void ApplyLog(const CefSettings& settings, CefCommandLine& command_line) {
  const CefString file(&settings.log_file);
  if (settings.log_severity == LOGSEVERITY_DISABLE || file.empty()) return;
  // Chromium counts from 0 for information.
  const int level = std::max<int>(settings.log_severity, LOGSEVERITY_WARNING) - LOGSEVERITY_INFO;
  command_line.AppendSwitchWithValue("enable-logging", "stderr");
  command_line.AppendSwitchWithValue("log-level", std::to_string(level));
  command_line.AppendSwitchWithValue("log-file", file);
}

}  // namespace

void ApplySettings(const CefSettings& settings, CefCommandLine& command_line) {
  if (settings.no_sandbox) command_line.AppendSwitch("no-sandbox");
  command_line.AppendSwitchWithValue("user-agent", CefString(&settings.user_agent));
  command_line.AppendSwitchWithValue("lang", "en-US");
  if (settings.remote_debugging_port >= kLowestDebuggingPort &&
      settings.remote_debugging_port <= kHighestDebuggingPort) {
    command_line.AppendSwitchWithValue("remote-debugging-port",
                                       std::to_string(settings.remote_debugging_port));
  }
  ApplyLog(settings, command_line);
  // What a browser's settings may ask for later has to be settled before Chromium starts.
  command_line.AppendSwitch("disable-3d-apis");
}

}  // namespace engine
