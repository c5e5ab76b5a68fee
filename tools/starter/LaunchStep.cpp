#include "tools/starter/LaunchStep.h"

#include <exception>

#include "tools/starter/ReturnSegment.h"

namespace {

StepOutcome NotStarted(const std::string& why) {
  StepOutcome outcome;
  outcome.detail = why;
  return outcome;
}

}  // namespace

StepOutcome RunStep(const StepSettings& settings) {
  if (settings.home.empty()) return NotStarted("HOME is not set");
  try {
    const ReturnSegment segment(DataFolder(settings.home));
    if (!segment.Clear())
      return NotStarted("an old result is in the way and belongs to another user");
    const HelperEnd end =
        RunHelper(settings.program, settings.request.ToJson(), settings.limits, settings.progress);
    const std::string text = segment.Read();
    segment.Remove();
    return Judge(settings.request.type, end, text);
  } catch (const std::exception& error) {
    return NotStarted(error.what());
  }
}
