#include "cef/chromium/CommandLine.h"

namespace engine {

CefRefPtr<CefCommandLine> CommandLine::Copy() {
  CefRefPtr<CommandLine> copy = new CommandLine;
  copy->program_ = program_;
  copy->switches_ = switches_;
  copy->arguments_ = arguments_;
  return copy.get();
}

void CommandLine::InitFromArgv(int argc, const char* const* argv) {
  if (read_only_) return;
  Reset();
  if (argc > 0) program_ = argv[0];
  bool only_arguments = false;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (!only_arguments && word == "--") {
      only_arguments = true;
    } else if (!only_arguments && word.size() > 1 && word[0] == '-') {
      const size_t begin = word.compare(0, 2, "--") == 0 ? 2 : 1;
      const size_t equals = word.find('=');
      const bool has_value = equals != std::string::npos;
      Set(word.substr(begin, has_value ? equals - begin : equals),
          has_value ? word.substr(equals + 1) : "");
    } else {
      arguments_.push_back(word);
    }
  }
}

void CommandLine::Reset() {
  if (read_only_) return;
  program_.clear();
  switches_.clear();
  arguments_.clear();
}

std::vector<std::string> CommandLine::Words() const {
  std::vector<std::string> words{program_};
  for (const auto& [name, value] : switches_) {
    words.push_back("--" + name + (value.empty() ? "" : "=" + value));
  }
  words.insert(words.end(), arguments_.begin(), arguments_.end());
  return words;
}

void CommandLine::GetArgv(std::vector<CefString>& argv) {
  argv.clear();
  for (const std::string& word : Words()) argv.push_back(word);
}

CefString CommandLine::GetCommandLineString() {
  std::string line;
  for (const std::string& word : Words()) {
    if (!line.empty()) line += ' ';
    line += word.find(' ') == std::string::npos ? word : "\"" + word + "\"";
  }
  return line;
}

void CommandLine::SetProgram(const CefString& program) {
  if (!read_only_) program_ = program.ToString();
}

const std::string* CommandLine::Find(const std::string& name) const {
  for (const auto& entry : switches_) {
    if (entry.first == name) return &entry.second;
  }
  return nullptr;
}

bool CommandLine::HasSwitch(const CefString& name) { return Find(name.ToString()) != nullptr; }

CefString CommandLine::GetSwitchValue(const CefString& name) {
  const std::string* value = Find(name.ToString());
  return value ? CefString(*value) : CefString();
}

void CommandLine::GetSwitches(SwitchMap& switches) {
  switches.clear();
  for (const auto& [name, value] : switches_) switches[name] = value;
}

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

void CommandLine::GetArguments(ArgumentList& arguments) {
  arguments.assign(arguments_.begin(), arguments_.end());
}

void CommandLine::AppendArgument(const CefString& argument) {
  if (!read_only_) arguments_.push_back(argument.ToString());
}

}  // namespace engine
