#include "cef/chromium/process/CommandLine.h"

namespace engine {

void CommandLine::Set(const std::string& name, const std::string& value) {
  if (read_only_ || name.empty()) return;
  for (auto& entry : switches_) {
    if (entry.first != name) continue;
    entry.second = value;
    return;
  }
  switches_.emplace_back(name, value);
}

void CommandLine::AppendSwitch(const CefString& name) { Set(name.ToString(), ""); }

void CommandLine::AppendSwitchWithValue(const CefString& name, const CefString& value) {
  if (!value.empty()) Set(name.ToString(), value.ToString());
}

}  // namespace engine
