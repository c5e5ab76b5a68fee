// Start and end of the Chromium that serves this process.

#ifndef CEF_CHROMIUM_PROCESS_LAUNCH_H_
#define CEF_CHROMIUM_PROCESS_LAUNCH_H_

#include <functional>
#include <memory>
#include <string>

#include "cef/chromium/base/Deadline.h"
#include "cef/chromium/devtools/DevToolsConnection.h"
#include "cef/chromium/process/ChromiumProcess.h"
#include "cef/chromium/process/NetLog.h"
#include "cef/chromium/process/Profile.h"

namespace engine {

// How long Chromium has for its first answer, however many that are installed are tried.
inline constexpr std::chrono::seconds kChromiumStartLimit{14};

// Start() and End() belong to the UI thread.
class Launch {
 public:
  // The connection must live as long as the process.
  explicit Launch(DevToolsConnection& connection) : connection_(connection) {}

  // Starts Chromium on the profile and opens the connection; `enable` then sends whatever commands
  // must come first. If another Chromium uses the profile, a private one is taken; if Chromium ends
  // before it answers, does not know a command or must not be used, the next one that is installed.
  // False and a reason in *err when none answers within 15 seconds or before one of the signals of
  // the message loop.
  //
  // Two of the switches are not passed on as they are. "log-file" is the file that receives what
  // Chromium prints. "no-sandbox" allows to do without the sandbox where there can be none: for
  // root, and where a start with it has failed (which the log file then says).
  bool Start(const std::string& cache_path, const Switches& switches,
             const std::function<void()>& enable, std::string* err);

  // Closes Chromium so that it saves its cookies; kills it when that takes longer than three
  // seconds. Removes what is temporary. Harmless when nothing runs.
  void End();

  // The last line in which Chromium has said why it had to end; "" if it has not. UI thread.
  std::string LastWords() const;

  // While Chromium runs.
  const std::string& profile_dir() const { return profile_->dir(); }
  // Null when there is no log. The log outlasts its owner while somebody still asks it. Any thread.
  std::shared_ptr<NetLog> net_log() const { return std::atomic_load(&net_log_); }

 private:
  enum class Result {
    kAnswers,
    kEnded,  // without an answer
    kUnfit,  // this Chromium cannot serve, another one may
    kGivenUp,
  };
  // What one attempt after the other starts.
  struct Plan {
    ChromiumOptions options;
    bool sandbox_needed = false;
    std::function<void()> enable;
    Clock::time_point deadline;
  };

  Result StartOne(const std::string& cache_path, Plan* plan, std::string* err);
  Result Attempt(Plan* plan, std::string* err);
  Result AttemptOnce(const Plan& plan, std::string* err);
  Result AwaitAnswer(Clock::time_point deadline, std::string* err);
  void Discard();

  DevToolsConnection& connection_;
  // In the order of their making; they are given up in the reverse order.
  std::unique_ptr<Profile> profile_;
  std::shared_ptr<NetLog> net_log_;  // replaced atomically
  std::unique_ptr<ChromiumProcess> process_;
  std::string chromium_path_;  // of the Chromium that is being tried
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_LAUNCH_H_
