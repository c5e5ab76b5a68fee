// What a session makes of an answer.

#ifndef TOOLS_LOG_JUDGEMENT_H_
#define TOOLS_LOG_JUDGEMENT_H_

#include <string>

#include "tools/log/Course.h"
#include "tools/log/Mark.h"

namespace log_reader {

struct Judgement {
  Mark::Tone tone = Mark::Tone::kPlain;
  std::string label;  // a few words, begun with a comma; or empty
  std::string text;   // whole sentences, each begun with a space; or empty
};

// Of a sign-in: which cookies the request carried, and what they mean for the step.
Judgement JudgementOf(const Course& course, const Exchange& exchange);

// Of a logout: the state that this exchange, which must be one of the course's, has brought about,
// as a sentence begun with a space; empty when it has changed nothing.
std::string LogoutChange(const Course& course, const Exchange& exchange);

}  // namespace log_reader

#endif  // TOOLS_LOG_JUDGEMENT_H_
