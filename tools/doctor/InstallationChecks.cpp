// The installed program, its menu and the framework.

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <sstream>
#include <string>

#include "cef/chromium/process/ChildProcess.h"
#include "cef/wrapper/function_table.h"
#include "include/cef_api_hash.h"
#include "libs/kxaccess/InstallPaths.h"
#include "tools/doctor/Checks.h"

namespace doctor {

namespace {

// Asks the dynamic linker what a program would be given, without running the program itself.
constexpr char kLibraryLister[] = "/usr/bin/ldd";
constexpr std::chrono::seconds kListLimit{2};

std::string MenuFile() {
  const std::string program = EB_DOCTOR_PROGRAM;
  return program.substr(0, program.rfind('/')) + "/Resources/MainMenu.xib";
}

// What a program prints until its end or until the limit has passed.
std::string OutputOf(const std::vector<std::string>& command) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {};
  engine::ChildOptions options;
  options.command = command;
  options.descriptors = {{ends[1], STDOUT_FILENO}};
  std::string ignored;
  const pid_t child = engine::StartChild(options, &ignored);
  close(ends[1]);
  std::string output;
  const auto end = engine::Clock::now() + kListLimit;
  char buffer[4096];
  while (child > 0 && engine::TimeLeft(end).count() > 0 && engine::WaitReadable(ends[0], end)) {
    const ssize_t count = read(ends[0], buffer, sizeof buffer);
    if (count <= 0) break;
    output.append(buffer, static_cast<size_t>(count));
  }
  close(ends[0]);
  if (child > 0) {
    kill(-child, SIGKILL);
    engine::ReapChild(child);
  }
  return output;
}

// The first library that the program needs and that is nowhere; empty when all are there.
std::string MissingLibrary(const std::string& program) {
  if (access(kLibraryLister, X_OK) != 0) return {};
  std::istringstream lines(OutputOf({kLibraryLister, program}));
  for (std::string line; std::getline(lines, line);) {
    if (line.find("not found") == std::string::npos) continue;
    const size_t begin = line.find_first_not_of(" \t");
    return line.substr(begin, line.find(' ', begin) - begin);
  }
  return {};
}

// The first of the framework's functions that the library lacks; null when it has all.
const char* MissingFunction(void* library) {
#define CEF_FUNCTION(result, name, parameters) \
  if (!dlsym(library, #name)) return #name;
  CEF_FUNCTIONS(CEF_FUNCTION)
#undef CEF_FUNCTION
  return nullptr;
}

}  // namespace

Finding CheckProgram() {
  const std::string program = EB_DOCTOR_PROGRAM;
  if (access(program.c_str(), X_OK) != 0) {
    return Failure("program", program + ": " + strerror(errno));
  }
  const std::string library = MissingLibrary(program);
  if (!library.empty()) return Failure("program", program + " needs " + library);
  return Ok("program", program);
}

Finding CheckMenu() {
  const std::string file = MenuFile();
  if (access(file.c_str(), R_OK) != 0) return Warning("main-menu", file + ": " + strerror(errno));
  return Ok("main-menu", file);
}

Finding CheckFramework() {
  const std::string path = InstallPaths::kFrameworkLibrary;
  // Stays open: the framework is made to stay where it was loaded.
  void* library = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
  if (!library) return Failure("framework", dlerror());
  if (const char* name = MissingFunction(library)) {
    return Failure("framework", path + " is not the framework: it has no " + name);
  }
  const auto hash = reinterpret_cast<const char* (*)(int)>(dlsym(library, "cef_api_hash"));
  const char* const built_for = hash(0);
  const std::string version = built_for ? built_for : "";
  if (version != CEF_API_HASH_PLATFORM) {
    return Failure("framework", path + " has the version \"" + version + "\"; the program needs " +
                                    CEF_API_HASH_PLATFORM);
  }
  return Ok("framework", path + ", version " + version);
}

}  // namespace doctor
