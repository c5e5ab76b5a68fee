// Start and end of the Chromium that serves this process.

#ifndef CEF_CHROMIUM_LAUNCH_H_
#define CEF_CHROMIUM_LAUNCH_H_

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cef/chromium/ChromiumProcess.h"
#include "cef/chromium/DevToolsConnection.h"
#include "cef/chromium/NetLog.h"
#include "cef/chromium/Profile.h"

namespace engine {

// Start() and End() belong to the UI thread.
class Launch {
 public:
  using Switches = std::vector<std::pair<std::string, std::string>>;

  // The connection must live as long as the process.
  explicit Launch(DevToolsConnection& connection) : connection_(connection) {}

  // Starts Chromium on the profile and opens the connection; `enable` then sends whatever commands
  // must come first. If another Chromium uses the profile, a private one is taken. False and a
  // reason in *err when no Chromium answers within 15 seconds or before one of the signals of the
  // message loop, or when it does not know a command.
  bool Start(const std::string& cache_path, const Switches& switches,
             const std::function<void()>& enable, std::string* err);

  // Closes Chromium so that it saves its cookies; kills it when that takes longer than three
  // seconds. Removes what is temporary. Harmless when nothing runs.
  void End();

  // The last line in which Chromium has said why it had to end; "" if it has not. UI thread.
  std::string LastWords() const;

  // While Chromium runs.
  const std::string& profile_dir() const { return profile_->dir(); }
  // Null when there is no log.
  NetLog* net_log() const { return net_log_.get(); }

 private:
  using Clock = std::chrono::steady_clock;

  bool Attempt(const Switches& switches, const std::function<void()>& enable,
               Clock::time_point deadline, bool* ended, std::string* err);
  bool AwaitAnswer(Clock::time_point deadline, std::string* err);
  void Discard();

  DevToolsConnection& connection_;
  // In the order of their making; they are given up in the reverse order.
  std::unique_ptr<Profile> profile_;
  std::unique_ptr<NetLog> net_log_;
  std::unique_ptr<ChromiumProcess> process_;
  std::string output_file_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_LAUNCH_H_
