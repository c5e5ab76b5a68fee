// One step from end to end: clear the segment, run the helper, read the segment, judge.

#ifndef TOOLS_STARTER_LAUNCHSTEP_H_
#define TOOLS_STARTER_LAUNCHSTEP_H_

#include <string>

#include "tools/starter/HelperProcess.h"
#include "tools/starter/LaunchRequest.h"
#include "tools/starter/Verdict.h"

struct StepSettings {
  LaunchRequest request;
  std::string program;  // path of the helper
  std::string home;     // what the helper will find as HOME; must not be empty
  HelperLimits limits;
  Progress progress;  // may be null
};

// Runs the step. Never throws: what goes wrong before the helper runs is the verdict "not started"
// with the reason as its detail. The segment is removed afterwards. One step at a time in a
// process.
StepOutcome RunStep(const StepSettings& settings);

#endif  // TOOLS_STARTER_LAUNCHSTEP_H_
