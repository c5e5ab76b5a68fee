// CefCommandLine: a program, its switches and its arguments.

#ifndef CEF_CHROMIUM_COMMANDLINE_H_
#define CEF_CHROMIUM_COMMANDLINE_H_

#include <string>
#include <utility>
#include <vector>

#include "include/cef_command_line.h"

namespace engine {

// Not for use by several threads while it is being changed; read-only ones may be shared.
class CommandLine : public CefCommandLine {
 public:
  CommandLine() = default;

  bool IsValid() override { return true; }
  bool IsReadOnly() override { return read_only_; }
  CefRefPtr<CefCommandLine> Copy() override;
  void InitFromArgv(int argc, const char* const* argv) override;
  void Reset() override;
  void GetArgv(std::vector<CefString>& argv) override;
  CefString GetCommandLineString() override;
  CefString GetProgram() override { return program_; }
  void SetProgram(const CefString& program) override;
  bool HasSwitches() override { return !switches_.empty(); }
  bool HasSwitch(const CefString& name) override;
  CefString GetSwitchValue(const CefString& name) override;
  void GetSwitches(SwitchMap& switches) override;
  void AppendSwitch(const CefString& name) override;
  void AppendSwitchWithValue(const CefString& name, const CefString& value) override;
  bool HasArguments() override { return !arguments_.empty(); }
  void GetArguments(ArgumentList& arguments) override;
  void AppendArgument(const CefString& argument) override;

  // From now on changes are ignored.
  void Freeze() { read_only_ = true; }

  // Switch names (without dashes) and values, in the order of their first appearance.
  using Switches = std::vector<std::pair<std::string, std::string>>;
  const Switches& switches() const { return switches_; }

 private:
  const std::string* Find(const std::string& name) const;
  void Set(const std::string& name, const std::string& value);
  std::vector<std::string> Words() const;

  std::string program_;
  Switches switches_;
  std::vector<std::string> arguments_;
  bool read_only_ = false;

  IMPLEMENT_REFCOUNTING(CommandLine);
};

}  // namespace engine

#endif  // CEF_CHROMIUM_COMMANDLINE_H_
