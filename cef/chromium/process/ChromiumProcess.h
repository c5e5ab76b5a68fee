// One running Chromium that is driven over a pair of pipes, and everything it leaves on the
// machine.

#ifndef CEF_CHROMIUM_PROCESS_CHROMIUMPROCESS_H_
#define CEF_CHROMIUM_PROCESS_CHROMIUMPROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <string>

#include "cef/chromium/process/ChromiumOutput.h"
#include "cef/chromium/process/ChromiumSwitches.h"
#include "cef/chromium/process/InstalledChromium.h"

namespace engine {

struct ChromiumOptions {
  InstalledChromium chromium;
  // An existing folder, absolute (see Profile).
  std::string profile_dir;
  // The profile is to be removed as well if this process is killed.
  bool private_profile = false;
  // Lists of features are joined with the built-in ones; any other switch replaces the built-in one
  // of its name.
  Switches switches;
  // Receives what Chromium prints, as ChromiumOutput says; "" = none.
  std::string log_file;
  // A folder from MakeRunFolder(), taken over by Start() even if it fails; "" = Start makes one.
  std::string run_folder;
};

// A Chromium without any window, in its own session and process group. Its temporary files and its
// cache of pages go to a run folder that is removed at the end. Should this process be killed, a
// guardian (a small shell process) removes what is left of Chromium, of the run folder and of a
// private profile. Pages cannot make it start the user's programs.
//
// All calls belong to one thread, except that output() may be asked by any.
class ChromiumProcess {
 public:
  // Starts Chromium. Returns null and says why in *err if there is none or it cannot be started.
  // A Chromium that exits right away (no display, profile in use) shows only as the end of
  // file on event_fd().
  static std::unique_ptr<ChromiumProcess> Start(const ChromiumOptions& options, std::string* err);

  // Kills what still runs and removes the run folder.
  ~ChromiumProcess();
  ChromiumProcess(const ChromiumProcess&) = delete;
  ChromiumProcess& operator=(const ChromiumProcess&) = delete;

  // Our ends of the pipes: commands are written, replies and events are read, JSON texts that each
  // end with a NUL. Blocking, owned by this object, close-on-exec. Writing to a Chromium that has
  // ended raises SIGPIPE unless that is ignored.
  int command_fd() const { return command_fd_; }
  int event_fd() const { return event_fd_; }

  pid_t pid() const { return pid_; }
  ChromiumOutput& output() { return *output_; }

  // Waits for the end of the main process; true if it has ended.
  bool WaitForExit(std::chrono::milliseconds limit);
  // Ends the whole process group at once, as far as it still runs, and reaps the main process.
  // Cookies set in the last moments are lost unless Chromium has ended before.
  void Kill();

 private:
  ChromiumProcess() = default;
  bool Spawn(const ChromiumOptions& options, std::string* err);
  bool StartGuardian(const ChromiumOptions& options, std::string* err);
  void DismissGuardian();

  int command_fd_ = -1;
  int event_fd_ = -1;
  pid_t pid_ = -1;
  int pid_fd_ = -1;
  pid_t guardian_ = -1;
  int guardian_fd_ = -1;  // the guardian acts when the last copy of this closes
  std::unique_ptr<ChromiumOutput> output_;
  std::string run_folder_;
  int run_folder_lock_ = -1;
  bool reaped_ = false;
};

// Makes a private folder (0700) with a path short enough for Chromium's sockets; "" and a reason in
// *err on failure. Removes those of processes that have died.
std::string MakeRunFolder(std::string* err);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_CHROMIUMPROCESS_H_
