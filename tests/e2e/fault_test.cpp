// Every call into the C library may fail once: the run still ends in time, with its result or a
// line that says why there is none, and leaves nothing behind.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <iostream>

#include "tests/e2e/E2eTest.h"
#include "tests/support/FailedCall.h"
#include "tests/support/Segment.h"

namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr seconds kInTime{12};
// A function that is called more often, or by other libraries, is tried so many times, evenly
// spread.
constexpr long kMost = 100;
constexpr long kSample = 20;
constexpr long kSampleOfLibraries = 8;

const std::string kStarterName = "embedded-browser-start";
const std::string kProgramName = "EmbeddedBrowser";

struct Which {
  std::string program;
  const char* function;
  long number;
  bool of_libraries = false;
};

class FaultTest : public E2eTest {
 protected:
  FaultTest() {
    log_is_whole_ = false;
    const int file = open(home_.write("call", "").c_str(), O_RDWR | O_CLOEXEC);
    if (ftruncate(file, sizeof(FailedCall)) != 0) throw std::runtime_error("no block");
    call_ = static_cast<FailedCall*>(
        mmap(nullptr, sizeof(FailedCall), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
    close(file);
  }
  ~FaultTest() override { munmap(call_, sizeof(FailedCall)); }

  enum class End { kResult, kRefusal };

  End RunWith(const Which& which) {
    which.program.copy(call_->program, sizeof call_->program - 1);
    call_->program[which.program.size()] = '\0';
    const auto same = [&](const char* name) { return std::string(name) == which.function; };
    call_->function = static_cast<unsigned>(std::find_if(kFallible.begin(), kFallible.end(), same) -
                                            kFallible.begin());
    call_->of_libraries = which.of_libraries;
    call_->number = which.number;
    for (auto& calls : call_->calls) calls[0] = calls[1] = 0;
    call_->failed = false;
    // As a user's first run, which does most.
    for (const auto& entry : std::filesystem::directory_iterator(DataFolder())) {
      std::filesystem::remove_all(entry.path());
    }
    Subprocess::Command command = StarterCommand(
        {"saml-login", "/saml-redirect/start?auto=1", "KXSAMLEMBID=launch", false, {}});
    command.environment["LD_PRELOAD"] = EB_FAILED_CALL;
    command.environment[FailedCall::kVariable] = home_.file("call");
    starter_is_whole_ = which.program != kStarterName;
    const auto begin = steady_clock::now();
    Subprocess starter(command);
    const auto end = starter.Wait(kPatience);
    const auto took = steady_clock::now() - begin;
    const std::string err = end ? end->err : "";
    const bool reported = end && !end->out.empty();
    const StarterReport report = reported ? Report(starter) : StarterReport();
    SCOPED_TRACE(which.program + "'s call " + std::to_string(which.number) + ": " +
                 (call_->failed ? call_->where : "none") + "\n" + report.verdict + ": " +
                 report.detail + "\n" + err + report.log);
    EXPECT_TRUE(end) << "no end";
    // Without memory, or where a library gives up, there is no other way.
    if (!which.of_libraries && std::string(which.function) != "malloc") {
      EXPECT_NE(report.verdict, "crashed");
      EXPECT_TRUE(!end || end->signal == 0);
    }
    EXPECT_THAT(err, testing::Not(testing::HasSubstr("does not answer")));
    // AppKit waits for a lock of its own that it could not remove.
    const bool locked_out = std::string(call_->where).find("GNUstepDefaults") != std::string::npos;
    EXPECT_LT(took, locked_out ? 3 * kInTime : kInTime);
    // Of a segment that cannot be removed.
    if (call_->failed && which.program == kStarterName) TakeSegment(DataFolder());
    // The next start removes the locks of a crash, after which the browser still ends.
    if (report.verdict == "crashed") {
      for (const pid_t process : UserProcesses()) EndsWithin(process, kInTime);
      std::error_code gone;
      std::filesystem::remove_all(DataFolder() + "cef", gone);
    }
    ExpectNothingLeft();
    if (report.verdict == "signed in") return End::kResult;
    const bool starter_knows = report.verdict == "not started" || report.verdict == "crashed" ||
                               report.verdict == "unreadable result";
    EXPECT_TRUE(!err.empty() || !ErrorsIn(report.log).empty() || starter_knows) << "no word of why";
    return End::kRefusal;
  }

  FailedCall* call_ = nullptr;
};

class WalkTest : public FaultTest, public testing::WithParamInterface<const char*> {
 protected:
  void Walk(Which which) {
    which.number = 0;
    EXPECT_EQ(RunWith(which), End::kResult);
    const std::array<long, 2> calls = {call_->calls[call_->function][0],
                                       call_->calls[call_->function][1]};
    for (const bool of_libraries : {false, true}) {
      which.of_libraries = of_libraries;
      WalkFrom(which, calls[of_libraries]);
    }
  }

 private:
  void WalkFrom(Which which, long calls) {
    const long sample = which.of_libraries ? kSampleOfLibraries : calls > kMost ? kSample : calls;
    const long step = std::max(1L, calls / std::max(1L, sample));
    long runs = 0, results = 0;
    for (which.number = 1; calls > 0; which.number += step) {
      const End end = RunWith(which);
      if (!call_->failed) break;
      ++runs;
      results += end == End::kResult;
    }
    if (runs == 0) return;
    std::cout << "| " << which.program << " | " << which.function
              << (which.of_libraries ? ", of libraries" : "") << " | " << calls << " | " << runs
              << " | " << results << " | " << runs - results << " |" << std::endl;
  }
};

TEST_P(WalkTest, EveryCallMayFailOnce) {
  for (const std::string& program : {kProgramName, kStarterName}) Walk({program, GetParam(), 0});
}

INSTANTIATE_TEST_SUITE_P(Nightly, WalkTest, testing::ValuesIn(kFallible),
                         [](const auto& info) { return std::string(info.param); });

// Those that went wrong, and how. Another number of the same function may have taken its place.
struct Found {
  const char* name;
  Which which;
};

class FoundTest : public FaultTest, public testing::WithParamInterface<Found> {};

TEST_P(FoundTest, EndsInOrder) {
  RunWith(GetParam().which);
  EXPECT_TRUE(call_->failed) << "there is no such call";
}

INSTANTIATE_TEST_SUITE_P(
    All, FoundTest,
    testing::Values(Found{"FlagsOfAPipeAreNotKnownSoItGetsAll", {kProgramName, "fcntl", 7}},
                    Found{"CommandIsLostAndWaitedFor", {kProgramName, "write", 5}},
                    Found{"LoopWithoutADescriptorGoesOn", {kProgramName, "eventfd", 1}},
                    Found{"LoopWithoutSignalsGoesOn", {kProgramName, "signalfd", 1}},
                    Found{"DisplayIsBlamedForADescriptor", {kProgramName, "eventfd", 4}},
                    Found{"ChromiumIsBlamedForADescriptor", {kProgramName, "eventfd", 7}},
                    Found{"DisplayGoesWhileAppKitConnects", {kProgramName, "recv", 300, true}},
                    Found{"FirstThreadCannotBeHad", {kProgramName, "thread", 1}},
                    Found{"LastThreadCannotBeHad", {kProgramName, "thread", 4}},
                    Found{"OneFileCannotBeRemoved", {kProgramName, "unlink", 9}},
                    Found{"OneFolderCannotBeRead", {kProgramName, "open", 60}},
                    Found{"StarterHasNoPipe", {kStarterName, "pipe", 1}},
                    Found{"StarterWaitsForItsOwnPipe", {kStarterName, "fcntl", 1}}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
