#include <unistd.h>

#include <exception>
#include <system_error>

#include "tools/starter/HelperProcess.h"
#include "tools/starter/ReturnSegment.h"
#include "tools/starter/Turn.h"
#include "tools/starter/Verdict.h"
#include "tools/starter/ebStarter.h"

namespace ebStarter {

namespace {

Outcome NotStarted(const std::string& why) {
  Outcome outcome;
  outcome.detail = why;
  return outcome;
}

Outcome Busy(const std::string& folder) {
  Outcome outcome;
  outcome.verdict = Verdict::kBusy;
  const int process = ReturnSegment::CreatorIn(folder);
  if (process > 0) outcome.detail = "process " + std::to_string(process);
  return outcome;
}

Outcome Finished(const Settings& settings, const HelperEnd& end, const ReturnSegment& segment) {
  try {
    return Judge(settings, end, segment.Read());
  } catch (const std::system_error& error) {
    Outcome outcome;
    outcome.verdict = Verdict::kUnreadable;
    outcome.detail = std::string("the result cannot be read: ") + error.what();
    outcome.end = end;
    return outcome;
  }
}

}  // namespace

Outcome RunStep(const Settings& settings) {
  if (settings.home.empty()) return NotStarted("HOME is not set; it must name your home folder");
  try {
    const int stop = settings.stop ? settings.stop->ends_[0] : -1;
    const std::string folder = DataFolder(settings.home);
    const Turn turn(folder);
    if (!turn.Take(settings.limits.turn, stop)) return Busy(folder);
    unsigned char number = 0;
    if (stop != -1 && read(stop, &number, 1) == 1) {
      HelperEnd end;
      end.stopped_by = number;
      return Judge(settings, end, "");
    }
    const ReturnSegment segment(folder);
    if (!segment.Prepare()) {
      return NotStarted(
          "an old result is in the way and belongs to another user; remove its shared memory");
    }
    return Finished(settings, RunHelper(settings, stop), segment);
  } catch (const std::exception& error) {
    return NotStarted(error.what());
  }
}

}  // namespace ebStarter
