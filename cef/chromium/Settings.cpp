#include "cef/chromium/Settings.h"

#include <sys/stat.h>
#include <unistd.h>

namespace engine {
namespace {

constexpr int kLowestDebuggingPort = 1024;
constexpr int kHighestDebuggingPort = 65535;

bool IsWritableFile(const std::string& path) {
  if (path.empty()) return false;
  struct stat status;
  if (stat(path.c_str(), &status) == 0) {
    return S_ISREG(status.st_mode) && access(path.c_str(), W_OK) == 0;
  }
  const size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  return access(folder.c_str(), W_OK | X_OK) == 0;
}

void Append(CefCommandLine& command_line, const char* name, const cef_string_t& value) {
  command_line.AppendSwitchWithValue(name, CefString(&value));
}

void ApplyLog(const CefSettings& settings, CefCommandLine& command_line) {
  const CefString file(&settings.log_file);
  if (settings.log_severity == LOGSEVERITY_DISABLE || !IsWritableFile(file.ToString())) return;
  command_line.AppendSwitch("enable-logging");
  command_line.AppendSwitchWithValue("log-file", file);
  if (settings.log_severity == LOGSEVERITY_VERBOSE) {
    command_line.AppendSwitchWithValue("v", "1");
  } else if (settings.log_severity >= LOGSEVERITY_INFO) {
    // Chromium counts from 0 for information.
    const int level = settings.log_severity - LOGSEVERITY_INFO;
    command_line.AppendSwitchWithValue("log-level", std::to_string(level));
  }
}

}  // namespace

void ApplySettings(const CefSettings& settings, CefCommandLine& command_line) {
  if (settings.no_sandbox) command_line.AppendSwitch("no-sandbox");
  Append(command_line, "user-agent", settings.user_agent);
  Append(command_line, "js-flags", settings.javascript_flags);
  Append(command_line, "accept-lang", settings.accept_language_list);
  const CefString locale(&settings.locale);
  command_line.AppendSwitchWithValue("lang", locale.empty() ? CefString("en-US") : locale);
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
