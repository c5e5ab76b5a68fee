#include "cef/chromium/Launch.h"

#include <algorithm>
#include <fstream>

#include "cef/chromium/Preferences.h"

namespace engine {
namespace {

constexpr std::chrono::seconds kStartLimit{14};
constexpr std::chrono::seconds kCloseLimit{3};
// After a kill the pipe ends at once.
constexpr std::chrono::seconds kPipeEndLimit{1};

// The last line that Chromium has printed: why it did not start, if it was able to say.
std::string LastLine(const std::string& path) {
  std::ifstream file(path);
  std::string last;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty()) last = line;
  }
  return last;
}

std::chrono::milliseconds Left(std::chrono::steady_clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - std::chrono::steady_clock::now());
  return std::max(left, std::chrono::milliseconds(0));
}

}  // namespace

bool Launch::Start(const std::string& cache_path, const Switches& switches,
                   const std::function<void()>& enable, std::string* err) {
  const Clock::time_point deadline = Clock::now() + kStartLimit;
  profile_ = Profile::Open(cache_path, err);
  if (!profile_) return false;
  bool ended = false;
  if (Attempt(switches, enable, deadline, &ended, err)) return true;
  Discard();
  // One that ends without a word may have found the profile in use by somebody else's Chromium.
  if (!ended || profile_->is_private()) {
    profile_.reset();
    return false;
  }
  profile_ = Profile::OpenPrivate(cache_path, err);
  if (profile_ && Attempt(switches, enable, deadline, &ended, err)) return true;
  Discard();
  profile_.reset();
  return false;
}

bool Launch::Attempt(const Switches& switches, const std::function<void()>& enable,
                     Clock::time_point deadline, bool* ended, std::string* err) {
  *ended = false;
  if (!SeedPreferences(profile_->dir(), err)) return false;
  ChromiumOptions options;
  options.profile_dir = profile_->dir();
  options.private_profile = profile_->is_private();
  options.switches = switches;
  options.run_folder = MakeRunFolder(err);
  if (options.run_folder.empty()) return false;
  options.output_file = options.run_folder + "/output";
  const std::string output_file = options.output_file;
  // Without it certificates have one fault only; no reason not to start.
  std::string ignored;
  net_log_ = NetLog::Start(options.run_folder, &ignored);
  if (net_log_) options.switches.emplace_back("log-net-log", net_log_->path());

  process_ = ChromiumProcess::Start(options, err);
  if (!process_) return false;
  connection_.Open(process_->command_fd(), process_->event_fd());
  enable();
  if (connection_.Call("", "Browser.getVersion", {}, Left(deadline), err)) return true;
  *ended = connection_.WaitClosed(std::chrono::milliseconds(0));
  const std::string last_line = LastLine(output_file);
  if (!last_line.empty()) *err += "; it says: " + last_line;
  return false;
}

void Launch::Discard() {
  if (process_) {
    process_->Kill();
    connection_.WaitClosed(kPipeEndLimit);
    process_.reset();
  }
  net_log_.reset();
}

void Launch::End() {
  if (process_ && connection_.IsOpen()) {
    connection_.Send("", "Browser.close");
    process_->WaitForExit(kCloseLimit);
  }
  Discard();
  profile_.reset();
}

}  // namespace engine
