// Whatever happens at whatever moment of a sign-in, alone or with something else: the run ends in
// time, hands back what it has gathered and leaves nothing behind.

#include <signal.h>

#include <algorithm>
#include <iostream>
#include <random>
#include <thread>

#include "tests/e2e/E2eTest.h"

namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kInTime{10 * EB_SLOWNESS};
constexpr char kSignIn[] = "/saml-redirect/start?auto=1";
constexpr unsigned kSeed = 1;

// What a sweep is made of, and what only ends a run together with something else.
enum Event { kTerm, kInt, kHup, kClose, kChromiumDies, kDisplayGoes, kAccept, kDisplayHangs };
constexpr int kEvents = kDisplayHangs;
constexpr const char* kNames[] = {"Term",         "Int",         "Hup",    "Close",
                                  "ChromiumDies", "DisplayGoes", "Accept", "DisplayHangs"};

struct Planned {
  Event event;
  double at;  // from 0, the run's start, to 1, its undisturbed end
};
using Plan = std::vector<Planned>;

auto Is(Event event) {
  return [event](const Planned& planned) { return planned.event == event; };
}

class MomentTest : public E2eTest {
 protected:
  MomentTest() { UseUnknownAuthority(); }

  // Does what does not need the program's help; false when there is nothing yet that it could
  // happen to.
  bool Happens(Event event, const Subprocess& program) {
    switch (event) {
      case kTerm:
      case kInt:
      case kHup:
        return program.Signal(event == kTerm ? SIGTERM : event == kInt ? SIGINT : SIGHUP);
      case kClose: {
        const std::string windows = display_ ? display_->Run({"wmctrl", "-l"}).output : "";
        const std::string id = windows.substr(0, windows.find(' '));
        return id.rfind("0x", 0) == 0 && display_->Run({"wmctrl", "-i", "-c", id}).status == 0;
      }
      case kChromiumDies: {
        const std::vector<pid_t> found = BrowserProcesses("");
        for (const pid_t process : found) kill(process, SIGKILL);
        return !found.empty();
      }
      case kDisplayHangs:
        display_->Hang(true);
        return true;
      case kDisplayGoes:
        display_.reset();
        return true;
      default:
        return display_ && Asked() && display_->Xdotool({"key", "alt+c"}).status == 0 && !Asked();
    }
  }

  void NeedDisplay() {
    if (display_) return;
    display_ = std::make_unique<VirtualDisplay>(VirtualDisplay::WindowManager::kOpenbox);
  }

  bool Asked() const {
    return display_->Xdotool({"search", "--onlyvisible", "--name", kQuestionTitle}).status == 0;
  }

  std::string AskingRequest() const {
    const std::string http = Address("");
    std::string request = Request(kSignIn);
    return request.replace(request.find(http), http.size(), Address("", true));
  }

  // Returns how long the run took from its start.
  milliseconds RunWith(const Plan& plan, milliseconds whole) {
    NeedDisplay();
    // Only a run that is asked can be answered.
    const bool question = std::any_of(plan.begin(), plan.end(), Is(kAccept));
    const std::string request = question ? AskingRequest() : Request(path_);
    std::ostringstream text;
    for (const Planned& planned : plan) {
      text << kNames[planned.event] << " at " << (whole * planned.at).count() << " ms ";
    }
    Subprocess program(DirectCommand(request));
    const auto begin = Clock::now();
    auto last = begin;
    Plan left = plan;
    const auto due = [&](const Planned& planned) {
      if (Clock::now() < begin + whole * planned.at || !Happens(planned.event, program))
        return false;
      last = Clock::now();
      return true;
    };
    while (!program.Wait(milliseconds(2)) && Clock::now() < begin + kPatience) {
      left.erase(std::remove_if(left.begin(), left.end(), due), left.end());
    }
    const auto end = Clock::now();
    if (display_) display_->Hang(false);
    const DirectReport report = DirectEnd(program, DataFolder());
    document_ = report.document;
    SCOPED_TRACE(text.str() + "\n" + report.document + "\n" + report.err + report.log);
    slowest_ = std::max(slowest_, std::chrono::duration_cast<milliseconds>(end - last));
    ++runs_;
    EXPECT_LT(end - last, kInTime);
    // Until main() holds them back, signals kill.
    if (report.signal != 0) {
      EXPECT_EQ(report.log, "");
      EXPECT_THAT(report.signal, testing::AnyOf(SIGTERM, SIGINT, SIGHUP));
    } else {
      EXPECT_EQ(report.exit_status, 0);
      ExpectGathered(plan, report);
    }
    ExpectNothingLeft();
    return std::chrono::duration_cast<milliseconds>(end - begin);
  }

  // The log tells what the session saw.
  static void ExpectGathered(const Plan& plan, const DirectReport& report) {
    const bool signed_in = report.log.find("successful saml auth") != std::string::npos;
    EXPECT_THAT(report.document, HasSubstr(signed_in ? R"("postauthcookie":"KXSAMLEBSTATEID=)"
                                                     : R"("postauthcookie":"")"));
    const std::string hook = "CefSAMLLogin::ProcessCookieResponse urlDomain:[idp.localhost]";
    if (report.log.find(hook) != report.log.rfind(hook)) {
      EXPECT_THAT(report.document, HasSubstr("IDPSESSION="));
    }
    if (signed_in) return;
    // A page that is shown says all itself when the user closes it.
    const bool closed = std::any_of(plan.begin(), plan.end(), Is(kClose));
    EXPECT_THAT(report.err, HasSubstr(closed ? "" : "cef: "));
  }

  std::string path_ = kSignIn;
  std::string document_;  // of the last run
  milliseconds slowest_{0};
  int runs_ = 0;
};

TEST_F(MomentTest, ReturnsWhatWasGatheredBeforeTheGatewayAnswers) {
  path_ = "/saml-slow-gateway/start?auto=1";
  const milliseconds whole = RunWith({}, milliseconds(0));
  for (const Event event : {kTerm, kClose, kChromiumDies, kDisplayGoes}) {
    RunWith({{event, 0.75}}, whole);
    EXPECT_THAT(document_, HasSubstr("IDPSESSION=")) << kNames[event];
  }
}

// AppKit's calls filled a buffer that nothing emptied any more.
TEST_F(MomentTest, DisplayGoesWhileAQuestionOpens) {
  for (const int milliseconds : {0, 10, 25, 45, 70}) {
    NeedDisplay();
    Subprocess program(DirectCommand(AskingRequest()));
    ASSERT_TRUE(WaitForLog(program.pid(), "inside OnCertificateError"));
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    display_.reset();
    ASSERT_TRUE(program.Wait(kInTime)) << milliseconds << " ms";
    EXPECT_THAT(DirectEnd(program, DataFolder()).err, HasSubstr("cef: the display has gone"));
    ExpectNothingLeft();
  }
}

TEST_F(MomentTest, EndsBySignalWhileTheDisplayDoesNotAnswer) {
  const milliseconds whole = RunWith({}, milliseconds(0));
  for (const double at : {0.02, 0.05, 0.1, 0.15, 0.2, 0.3, 0.6}) {
    RunWith({{kDisplayHangs, at}, {kTerm, at + 0.3}}, whole);
  }
}

// `count` moments of the event alone, and `pairs` of it with each of those after it.
struct Sweep {
  Event event;
  int count;
  int pairs;
};

class EveryMomentTest : public MomentTest, public testing::WithParamInterface<Sweep> {};

TEST_P(EveryMomentTest, EndsInTimeWithWhatWasGathered) {
  const Sweep sweep = GetParam();
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> any(0, 1);
  // The second one, for the first has a fresh profile.
  const auto measure = [this](const Plan& plan) {
    RunWith(plan, milliseconds(0));
    return RunWith(plan, milliseconds(0));
  };
  const milliseconds plain = measure({});
  const milliseconds asked = measure({{kAccept, 0}});
  const auto moment = [&](int i, int of) { return (i + any(random)) / of; };
  const auto whole = [&](Event other) { return other == kAccept ? asked : plain; };
  for (int i = 0; i < sweep.count; ++i) {
    RunWith({{sweep.event, moment(i, sweep.count)}}, whole(sweep.event));
  }
  for (int other = sweep.event + 1; other < kEvents; ++other) {
    for (int i = 0; i < sweep.pairs; ++i) {
      const auto second = static_cast<Event>(other);
      RunWith({{sweep.event, moment(i, sweep.pairs)}, {second, any(random)}}, whole(second));
    }
  }
  std::cout << kNames[sweep.event] << ": " << runs_ << " runs of " << plain.count() << " ms, "
            << asked.count() << " ms with a question; the slowest end took " << slowest_.count()
            << " ms" << std::endl;
}

std::vector<Sweep> Sweeps(int count, int pairs) {
  std::vector<Sweep> sweeps;
  for (int event = 0; event < kEvents; ++event) {
    sweeps.push_back({static_cast<Event>(event), count, pairs});
  }
  return sweeps;
}

std::string NameOf(const testing::TestParamInfo<Sweep>& info) { return kNames[info.param.event]; }

INSTANTIATE_TEST_SUITE_P(All, EveryMomentTest, testing::ValuesIn(Sweeps(5, 1)), NameOf);
INSTANTIATE_TEST_SUITE_P(Nightly, EveryMomentTest, testing::ValuesIn(Sweeps(50, 50)), NameOf);

}  // namespace
