// Records the step as a flow tape.

#ifndef TOOLS_STARTER_TAPEOFSTEP_H_
#define TOOLS_STARTER_TAPEOFSTEP_H_

#include <memory>
#include <optional>
#include <string>

#include "tools/starter/Options.h"
#include "tools/tape/Recorder.h"

class TapeOfStep {
 public:
  // Begins to record, before the step; while the process has one thread. Returns an empty text, or
  // why it cannot be done.
  static std::string Begin(const Options& options, std::optional<TapeOfStep>& tape);

  // Writes the tape, after the step. Returns an empty text, or what is wrong with it.
  std::string End(const ebStarter::Outcome& outcome);

 private:
  TapeOfStep(const Options& options, std::unique_ptr<tape::Recorder> recorder);

  std::string path_;
  ebStarter::Request request_;
  std::unique_ptr<tape::Recorder> recorder_;
};

#endif  // TOOLS_STARTER_TAPEOFSTEP_H_
