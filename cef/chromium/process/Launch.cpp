#include "cef/chromium/process/Launch.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <system_error>
#include <thread>

#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/process/Preferences.h"
#include "platform/Display.h"
#include "platform/DisplayReach.h"

namespace engine {
namespace {

constexpr std::chrono::seconds kCloseLimit{3};
// After a kill the pipe ends at once.
constexpr std::chrono::seconds kPipeEndLimit{1};

constexpr char kNoSandbox[] = "no-sandbox";

// Longer than any X server needs, over any network.
constexpr std::chrono::seconds kDisplayLimit{5};

constexpr char kNoDescriptors[] = "no descriptors left";

// What is waited for; shared, since it may come after the wait was given up.
struct Arrival {
  const int arrived = eventfd(0, EFD_CLOEXEC);

  ~Arrival() {
    if (arrived >= 0) close(arrived);
  }
};

// The reply to Browser.getVersion.
struct Answer : Arrival {
  std::mutex mutex;
  bool ok = false;      // guarded by mutex
  std::string product;  // guarded by mutex
};

// Waits until the X server has said anything, be it no. One that is stopped, or behind a network
// that has gone, would hold up everything that talks to it for ever.
bool AwaitDisplay(std::string* err) {
  const auto arrival = std::make_shared<Arrival>();
  if (arrival->arrived < 0) {
    *err = kNoDescriptors;
    return false;
  }
  std::thread([arrival] {
    WhyNoDisplay();
    eventfd_write(arrival->arrived, 1);
  }).detach();
  const Clock::time_point deadline = Clock::now() + kDisplayLimit;
  if (MessageLoop::Get().AwaitReadable(arrival->arrived, deadline)) return true;
  const bool late = TimeLeft(deadline).count() == 0;
  *err = late ? "no display: the X server does not answer" : "a signal has ended the wait for it";
  return false;
}

std::string NoDisplay() {
  const std::string why = WhyNoDisplay();
  return "no display: " + (why.empty() ? "it has gone" : why);
}

// The value of the switch, which is taken out; *there tells whether it was.
std::string Take(const std::string& name, Switches* switches, bool* there) {
  std::string value;
  *there = false;
  for (auto it = switches->begin(); it != switches->end();) {
    const bool same = it->first == name;
    if (same) value = it->second;
    *there = *there || same;
    it = same ? switches->erase(it) : it + 1;
  }
  return value;
}

void AddReason(const std::string& reason, std::string* reasons) {
  // Several browsers may fail for the same reason.
  if (reasons->find(reason) != std::string::npos) return;
  if (!reasons->empty()) *reasons += "; ";
  *reasons += reason;
}

}  // namespace

bool Launch::Start(const std::string& cache_path, const Switches& switches,
                   const std::function<void()>& enable, std::string* err) {
  if (!AwaitDisplay(err)) return false;
  Plan plan;
  plan.deadline = Clock::now() + kChromiumStartLimit;
  plan.enable = enable;
  Switches wanted = switches;
  bool may_do_without = false;
  bool ignored = false;
  Take(kNoSandbox, &wanted, &may_do_without);
  plan.options.log_file = Take("log-file", &wanted, &ignored);
  // Chromium has none to offer to root.
  const bool root = geteuid() == 0;
  if (may_do_without && root) wanted.emplace_back(kNoSandbox, "");
  plan.options.switches = wanted;

  std::string reasons;
  const std::vector<InstalledChromium> installed = FindChromiums(&reasons);
  // Callers know this, and that of the display, by its first words.
  if (installed.empty()) reasons = "no browser: " + reasons;
  for (const InstalledChromium& chromium : installed) {
    std::string reason = ForbiddingPolicy(chromium);
    if (reason.empty()) {
      plan.options.chromium = chromium;
      plan.options.switches = wanted;
      plan.sandbox_needed = root || !may_do_without;
      const Result result = StartOne(cache_path, &plan, &reason);
      if (result == Result::kAnswers) return true;
      profile_.reset();
      if (result == Result::kGivenUp) {
        *err = reason;
        return false;
      }
    }
    AddReason(reason, &reasons);
  }
  *err = reasons;
  return false;
}

Launch::Result Launch::StartOne(const std::string& cache_path, Plan* plan, std::string* err) {
  profile_ = Profile::Open(cache_path, err);
  if (!profile_) return Result::kGivenUp;
  const Result result = Attempt(plan, err);
  if (result != Result::kEnded || profile_->is_private()) return result;
  // One that ends without a word may have found the profile in use by somebody else's Chromium.
  profile_ = Profile::OpenPrivate(cache_path, err);
  return profile_ ? Attempt(plan, err) : Result::kGivenUp;
}

// With the sandbox or, where there is none and none is needed, without.
Launch::Result Launch::Attempt(Plan* plan, std::string* err) {
  Result result = AttemptOnce(*plan, err);
  const bool no_sandbox =
      result == Result::kEnded && !plan->sandbox_needed && process_->output().TellsOfNoSandbox();
  if (no_sandbox) {
    Discard();
    plan->sandbox_needed = true;
    plan->options.switches.emplace_back(kNoSandbox, "");
    result = AttemptOnce(*plan, err);
    if (result == Result::kAnswers) {
      process_->output().Note("No sandbox can be had here, pages are shown without it.");
    }
  }
  if (result != Result::kAnswers) Discard();
  return result;
}

Launch::Result Launch::AttemptOnce(const Plan& plan, std::string* err) {
  if (!SeedPreferences(profile_->dir(), err)) return Result::kGivenUp;
  ChromiumOptions options = plan.options;
  options.profile_dir = profile_->dir();
  options.private_profile = profile_->is_private();
  options.run_folder = MakeRunFolder(err);
  if (options.run_folder.empty()) return Result::kGivenUp;
  chromium_path_ = options.chromium.path;
  // Without it certificates have one fault only; no reason not to start.
  std::string ignored;
  std::shared_ptr<NetLog> log;
  try {
    log = NetLog::Start(options.run_folder, &ignored);
  } catch (const std::system_error&) {
  }
  if (log) options.switches.emplace_back("log-net-log", log->path());
  std::atomic_store(&net_log_, log);

  process_ = ChromiumProcess::Start(options, err);
  if (!process_) return Result::kUnfit;
  connection_.Open(process_->command_fd(), process_->event_fd());
  plan.enable();
  return AwaitAnswer(plan.deadline, err);
}

// The answer to the last command of the start: by then those before it have been answered too, as
// far as Chromium does not know them.
Launch::Result Launch::AwaitAnswer(Clock::time_point deadline, std::string* err) {
  const auto answer = std::make_shared<Answer>();
  if (answer->arrived < 0) {
    *err = kNoDescriptors;
    return Result::kGivenUp;
  }
  connection_.Send("", "Browser.getVersion", {},
                   [answer](const JsonValue* result, const std::string&) {
                     {
                       std::lock_guard<std::mutex> lock(answer->mutex);
                       answer->ok = result != nullptr;
                       if (result) answer->product = TextAt(*result, "product");
                     }
                     eventfd_write(answer->arrived, 1);
                   });
  // Chromium needs longer for its start than this.
  ConnectDisplay();
  // Chromium may need ten seconds to notice.
  const bool lost = !HaveDisplay() && !WhyNoDisplay().empty();
  const bool answered = !lost && MessageLoop::Get().AwaitReadable(answer->arrived, deadline);
  if (lost || MessageLoop::Get().DisplayIsLost()) {
    *err = NoDisplay();
    return Result::kGivenUp;
  }
  if (!answered) {
    const bool late = TimeLeft(deadline).count() == 0;
    *err = late ? "it does not answer" : "a signal has ended the wait for it";
    return Result::kGivenUp;
  }
  std::lock_guard<std::mutex> lock(answer->mutex);
  const std::string unknown = connection_.UnknownCommand();
  if (!unknown.empty()) {
    const std::string name = answer->product.empty() ? "the one installed" : answer->product;
    *err = name + " is too old: it does not know " + unknown;
    return Result::kUnfit;
  }
  if (answer->ok) return Result::kAnswers;
  // Chromium's own words for this are of no help to a user.
  if (!WhyNoDisplay().empty()) {
    *err = NoDisplay();
    return Result::kGivenUp;
  }
  if (process_->output().TellsOfPolicy()) {
    *err = "the policy RemoteDebuggingAllowed forbids that other programs use " + chromium_path_;
    return Result::kUnfit;
  }
  *err = chromium_path_ + " has ended before it answered";
  const std::string words = process_->output().LastLine();
  if (!words.empty()) *err += "; it says: " + words;
  return Result::kEnded;
}

std::string Launch::LastWords() const { return process_ ? process_->output().LastWords() : ""; }

void Launch::Discard() {
  if (process_) {
    process_->Kill();
    connection_.WaitClosed(kPipeEndLimit);
    process_.reset();
  }
  std::atomic_store(&net_log_, std::shared_ptr<NetLog>());
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
