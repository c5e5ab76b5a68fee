#include "tools/doctor/Archive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>

#include "cef/chromium/process/ChildProcess.h"
#include "cef/chromium/process/PrivateFolder.h"

namespace doctor {

namespace {

constexpr std::chrono::seconds kLimit{20};

// A signal waits until everything has been tidied up.
class LateSignals {
 public:
  LateSignals() {
    came_ = 0;
    struct sigaction note = {};
    note.sa_handler = [](int number) { came_ = number; };
    note.sa_flags = SA_RESTART;
    for (size_t i = 0; i < kNumbers.size(); ++i) {
      sigaction(kNumbers[i], &note, &former_[i]);
      if (former_[i].sa_handler == SIG_IGN) sigaction(kNumbers[i], &former_[i], nullptr);
    }
  }
  ~LateSignals() {
    for (size_t i = 0; i < kNumbers.size(); ++i) sigaction(kNumbers[i], &former_[i], nullptr);
    if (came_ != 0) raise(came_);
  }
  LateSignals(const LateSignals&) = delete;
  LateSignals& operator=(const LateSignals&) = delete;

  static bool came() { return came_ != 0; }

 private:
  static constexpr std::array kNumbers = {SIGHUP, SIGINT, SIGTERM};
  static volatile sig_atomic_t came_;
  std::array<struct sigaction, kNumbers.size()> former_ = {};
};
volatile sig_atomic_t LateSignals::came_ = 0;

int NewFile(const std::string& path) {
  return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
}

std::string Reason(const std::string& path) {
  return path + (errno == EEXIST ? " exists already" : std::string(": ") + strerror(errno));
}

// Why the program has not done its work; empty when it has. It writes to the descriptor.
std::string RunTar(const std::string& parent, const std::string& folder, int output) {
  engine::ChildOptions options;
  options.command = {access("/usr/bin/tar", X_OK) == 0 ? "/usr/bin/tar" : "/bin/tar",
                     "--create",
                     "--gzip",
                     "--file=-",
                     "--owner=0",
                     "--group=0",
                     "--numeric-owner",
                     "--sort=name",
                     "--mode=u=rwX,go=",
                     "--directory=" + parent,
                     folder};
  options.descriptors = {{output, STDOUT_FILENO}};
  options.environment = {{"PATH", "/usr/bin:/bin"}};  // it looks for gzip there
  std::string problem;
  const pid_t child = engine::StartChild(options, &problem);
  if (child < 0) return problem;
  const int process = engine::OpenProcess(child);
  const bool ended = process >= 0 && engine::WaitReadable(process, kLimit);
  if (process >= 0) close(process);
  if (!ended) kill(-child, SIGKILL);
  const int status = engine::ReapChild(child);
  if (!ended) return "tar has not ended within " + std::to_string(kLimit.count()) + " seconds";
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? "" : "tar could not write it";
}

}  // namespace

std::string WhyNoNewFile(const std::string& path) {
  const int file = NewFile(path);
  if (file < 0) return Reason(path);
  close(file);
  unlink(path.c_str());
  return {};
}

std::string WriteArchive(const std::string& path, const std::string& folder,
                         const std::vector<ArchivedFile>& files) {
  const LateSignals signals;
  const std::string stem = engine::TemporaryFolder() + "/embedded-browser-bundle";
  engine::SweepPrivateFolders(stem);
  const std::string parent = engine::MakePrivateFolder(stem, nullptr);
  if (parent.empty()) return Reason(engine::TemporaryFolder());
  std::string problem;
  if (mkdir((parent + "/" + folder).c_str(), 0700) != 0) problem = Reason(parent);
  for (const ArchivedFile& file : files) {
    std::ofstream stream(parent + "/" + folder + "/" + file.name, std::ios::binary);
    stream << file.text << std::flush;
    if (!stream) problem = parent + " cannot be written";
  }
  const int output = problem.empty() ? NewFile(path) : -1;
  if (problem.empty() && output < 0) problem = Reason(path);
  if (output >= 0) {
    problem = RunTar(parent, folder, output);
    if (close(output) != 0 && problem.empty()) problem = Reason(path);
    if (problem.empty() && LateSignals::came()) problem = "ended by a signal";
    if (!problem.empty()) unlink(path.c_str());
  }
  engine::RemoveTree(parent);
  return problem;
}

}  // namespace doctor
