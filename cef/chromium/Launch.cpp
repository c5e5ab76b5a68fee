#include "cef/chromium/Launch.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>

#include "cef/chromium/MessageLoop.h"
#include "cef/chromium/Preferences.h"
#include "platform/DisplayReach.h"

namespace engine {
namespace {

constexpr std::chrono::seconds kStartLimit{14};
constexpr std::chrono::seconds kCloseLimit{3};
// After a kill the pipe ends at once.
constexpr std::chrono::seconds kPipeEndLimit{1};

// Most of what a running Chromium prints is of no consequence.
bool TellsOfAnEnd(const std::string& line) {
  for (const char* mark : {":FATAL:", "Received signal", "ut of memory", "terminate called"}) {
    if (line.find(mark) != std::string::npos) return true;
  }
  return false;
}

// The reply to Browser.getVersion; shared, since it may come after the wait was given up.
struct Answer {
  const int arrived = eventfd(0, EFD_CLOEXEC);
  std::mutex mutex;
  bool ok = false;      // guarded by mutex
  std::string product;  // guarded by mutex
  std::string error;    // guarded by mutex

  ~Answer() {
    if (arrived >= 0) close(arrived);
  }
};

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
  options.output_file = output_file_ = options.run_folder + "/output";
  // Without it certificates have one fault only; no reason not to start.
  std::string ignored;
  net_log_ = NetLog::Start(options.run_folder, &ignored);
  if (net_log_) options.switches.emplace_back("log-net-log", net_log_->path());

  process_ = ChromiumProcess::Start(options, err);
  if (!process_) return false;
  connection_.Open(process_->command_fd(), process_->event_fd());
  enable();
  if (AwaitAnswer(deadline, err)) return true;
  *ended = connection_.WaitClosed(std::chrono::milliseconds(0));
  return false;
}

// The answer to the last command of the start: by then those before it have been answered too, as
// far as Chromium does not know them.
bool Launch::AwaitAnswer(Clock::time_point deadline, std::string* err) {
  const auto answer = std::make_shared<Answer>();
  connection_.Send("", "Browser.getVersion", {},
                   [answer](const JsonValue* result, const std::string& error) {
                     {
                       std::lock_guard<std::mutex> lock(answer->mutex);
                       answer->ok = result != nullptr;
                       if (result) answer->product = TextAt(*result, "product");
                       answer->error = error;
                     }
                     eventfd_write(answer->arrived, 1);
                   });
  if (!MessageLoop::Get().AwaitReadable(answer->arrived, Left(deadline))) {
    const bool late = Left(deadline).count() == 0;
    *err = late ? "it does not answer" : "a signal has ended the wait for it";
    return false;
  }
  std::lock_guard<std::mutex> lock(answer->mutex);
  const std::string unknown = connection_.UnknownCommand();
  if (!unknown.empty()) {
    const std::string name = answer->product.empty() ? "the one installed" : answer->product;
    *err = name + " is too old: it does not know " + unknown;
    return false;
  }
  if (answer->ok) return true;
  // Chromium's own words for this are of no help to a user.
  *err = WhyNoDisplay();
  if (!err->empty()) return false;
  *err = answer->error;
  const std::string words = LastOutputLine(output_file_);
  if (!words.empty()) *err += "; it says: " + words;
  return false;
}

std::string Launch::LastWords() const { return LastOutputLine(output_file_, TellsOfAnEnd); }

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
