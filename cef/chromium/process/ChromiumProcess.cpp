#include "cef/chromium/process/ChromiumProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "cef/chromium/process/ChildProcess.h"
#include "cef/chromium/process/PrivateFolder.h"

namespace engine {

namespace {

// The longest temporary folder that leaves room for "/cef-<process>-XXXXXX" and Chromium's own
// "/org.chromium.Chromium.XXXXXX/SingletonSocket" in a socket's path of 107 bytes.
constexpr size_t kLongestTemporaryFolder = 40;

// Standard input: first a line with Chromium's process group, then nothing until its end, which is
// our death. Chromium then exits on its own within a moment; three seconds are for one that hangs.
constexpr char kGuardianScript[] = R"(trap '' HUP INT QUIT TERM
read -r group
read -r never
if [ -n "$group" ]; then
  timeout 3 tail --pid="$group" -s 0.05 -f /dev/null
  kill -s KILL -- "-$group"
fi
rm -rf -- "$@" || { sleep 1; rm -rf -- "$@"; }
)";

// A value for PATH. A page's link of another scheme (mailto:, tel:, any name) makes Chromium look
// for three commands. Of those that are found the first says that Chromium itself is the program
// for the scheme, upon which Chromium neither asks the user nor starts anything; the others are
// what it would start.
std::string PathWithStandIns(const std::string& run_folder) {
  const std::string folder = run_folder + "/commands";
  std::error_code error;
  std::filesystem::create_directory(folder, error);
  const std::string settings = folder + "/xdg-settings";
  std::ofstream(settings) << "#!/bin/sh\necho yes\n";
  std::filesystem::permissions(settings, std::filesystem::perms::owner_all, error);
  for (const char* name : {"/xdg-open", "/xdg-email"}) {
    std::filesystem::create_symlink("/bin/false", folder + name, error);
    if (error) return folder;
  }
  return folder + ":/usr/local/bin:/usr/bin:/bin";
}

void Close(int* fd) {
  if (*fd >= 0) close(*fd);
  *fd = -1;
}

std::string Reason(const char* what) { return std::string(what) + ": " + strerror(errno); }

}  // namespace

std::string MakeRunFolder(std::string* err) {
  std::string temporary = TemporaryFolder();
  if (temporary.size() > kLongestTemporaryFolder) temporary = "/tmp";
  const std::string stem = temporary + "/cef";
  SweepPrivateFolders(stem);
  const std::string folder = MakePrivateFolder(stem, nullptr);
  if (folder.empty()) *err = Reason(("cannot make a folder in " + temporary).c_str());
  return folder;
}

std::unique_ptr<ChromiumProcess> ChromiumProcess::Start(const ChromiumOptions& options,
                                                        std::string* err) {
  std::unique_ptr<ChromiumProcess> process(new ChromiumProcess);
  process->run_folder_ = options.run_folder.empty() ? MakeRunFolder(err) : options.run_folder;
  if (process->run_folder_.empty()) return nullptr;
  bool busy = false;
  process->run_folder_lock_ = LockFolder(process->run_folder_, &busy);
  process->output_ = ChromiumOutput::Start(options.log_file, err);
  // The guardian first: without one Chromium must not run.
  if (!process->output_ || !process->StartGuardian(options, err) || !process->Spawn(options, err)) {
    return nullptr;
  }
  return process;
}

bool ChromiumProcess::StartGuardian(const ChromiumOptions& options, std::string* err) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    *err = Reason("socketpair");
    return false;
  }
  ChildOptions child;
  child.command = {"/bin/sh", "-c", kGuardianScript, "sh", run_folder_};
  if (options.private_profile) child.command.push_back(options.profile_dir);
  child.descriptors = {{ends[0], STDIN_FILENO}};
  guardian_ = StartChild(child, err);
  close(ends[0]);
  guardian_fd_ = ends[1];
  return guardian_ > 0;
}

bool ChromiumProcess::Spawn(const ChromiumOptions& options, std::string* err) {
  int commands[2] = {-1, -1};
  int events[2] = {-1, -1};
  if (pipe2(commands, O_CLOEXEC) != 0 || pipe2(events, O_CLOEXEC) != 0) {
    *err = Reason("pipe");
    Close(&commands[0]);
    Close(&commands[1]);
    return false;
  }
  command_fd_ = commands[1];
  event_fd_ = events[0];

  ChildOptions child;
  Switches switches = {{"disk-cache-dir", run_folder_ + "/cache"}};
  switches.insert(switches.end(), options.switches.begin(), options.switches.end());
  child.command = ChromiumArguments(options.profile_dir, switches, SharedMemoryIsSmall());
  child.command.insert(child.command.begin(), options.chromium.path);
  child.descriptors = {{commands[0], 3},
                       {events[1], 4},
                       {output_->writer(), STDOUT_FILENO},
                       {output_->writer(), STDERR_FILENO}};
  // Its keeper of crash reports, which no switch keeps away, would write the memory of a process
  // that crashes, cookies included, below the home folder.
  child.environment = {{"TMPDIR", run_folder_},
                       {"PATH", PathWithStandIns(run_folder_)},
                       {"BREAKPAD_DUMP_LOCATION", run_folder_ + "/crashes"}};
  pid_ = StartChild(child, err);
  Close(&commands[0]);
  Close(&events[1]);
  output_->CloseWriter();
  if (pid_ < 0) return false;

  const std::string group = std::to_string(pid_) + "\n";
  send(guardian_fd_, group.data(), group.size(), MSG_NOSIGNAL);
  pid_fd_ = OpenProcess(pid_);
  if (pid_fd_ < 0) {
    *err = Reason("pidfd_open");
    return false;
  }
  return true;
}

ChromiumProcess::~ChromiumProcess() {
  Kill();
  Close(&pid_fd_);
  Close(&command_fd_);
  Close(&event_fd_);
  if (!run_folder_.empty()) RemoveTree(run_folder_);
  Close(&run_folder_lock_);
  // Last: if we are killed during the above, the guardian still finishes it.
  DismissGuardian();
}

bool ChromiumProcess::WaitForExit(std::chrono::milliseconds limit) {
  // The process is left to be reaped by Kill(): until then nobody else can get its number, nor that
  // of its group.
  return WaitReadable(pid_fd_, limit);
}

void ChromiumProcess::Kill() {
  if (pid_ < 0 || reaped_) return;
  kill(-pid_, SIGKILL);
  ReapChild(pid_);
  reaped_ = true;
}

void ChromiumProcess::DismissGuardian() {
  if (guardian_ > 0) {
    kill(guardian_, SIGKILL);
    ReapChild(guardian_);
  }
  Close(&guardian_fd_);
}

}  // namespace engine
