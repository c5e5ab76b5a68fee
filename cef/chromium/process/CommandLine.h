// CefCommandLine: the switches of the browser's command line.

#ifndef CEF_CHROMIUM_PROCESS_COMMANDLINE_H_
#define CEF_CHROMIUM_PROCESS_COMMANDLINE_H_

#include <string>

#include "cef/chromium/process/ChromiumSwitches.h"
#include "include/cef_command_line.h"

namespace engine {

// Not for use by several threads before it is frozen; then it may be shared.
class CommandLine : public CefCommandLine {
 public:
  void AppendSwitch(const CefString& name) override;
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override;

  // From now on changes are ignored.
  void Freeze() { read_only_ = true; }

  // In the order of their first appearance.
  const Switches& switches() const { return switches_; }

 private:
  void Set(const std::string& name, const std::string& value);

  Switches switches_;
  bool read_only_ = false;

  IMPLEMENT_REFCOUNTING(CommandLine);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_COMMANDLINE_H_
