#include "cef/chromium/process/Settings.h"

#include <algorithm>
#include <string>

#include "platform/UserLanguages.h"

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

// Chromium's own texts, as far as they are installed.
std::string UiLanguage() {
  const std::vector<std::string> wanted = UserLanguages();
  return wanted.empty() ? "en-US" : wanted.front();
}

// What pages are asked for in: the user's languages, each also without its country, and English.
std::string AcceptLanguages() {
  std::vector<std::string> wanted = UserLanguages();
  wanted.push_back("en-US");
  std::string list;
  for (const std::string& language : wanted) {
    for (const std::string& name : {language, language.substr(0, language.find('-'))}) {
      if (("," + list + ",").find("," + name + ",") != std::string::npos) continue;
      list += (list.empty() ? "" : ",") + name;
    }
  }
  return list;
}

}  // namespace

void ApplySettings(const CefSettings& settings, CefCommandLine& command_line) {
  if (settings.no_sandbox) command_line.AppendSwitch("no-sandbox");
  command_line.AppendSwitchWithValue("user-agent", CefString(&settings.user_agent));
  command_line.AppendSwitchWithValue("lang", UiLanguage());
  command_line.AppendSwitchWithValue("accept-lang", AcceptLanguages());
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
