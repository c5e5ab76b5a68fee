#include "tools/starter/TapeOfStep.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "tools/tape/HookRecords.h"
#include "tools/tape/StandIns.h"
#include "tools/tape/TapeFile.h"

namespace {

using ebStarter::StepType;

const char* NameOf(StepType type) {
  for (const char* name : {"saml-login", "custom", "saml-logout"}) {
    if (ebStarter::StepTypeNamed(name) == type) return name;
  }
  return "";
}

// Their names, and what status cookies say.
tape::Cookies NamesOf(std::string_view cookies, tape::StandIns& stand_ins) {
  tape::Cookies names;
  while (!cookies.empty()) {
    const size_t end = std::min(cookies.find(';'), cookies.size());
    std::string_view item = cookies.substr(0, end);
    cookies.remove_prefix(std::min(end + 1, cookies.size()));
    item.remove_prefix(std::min(item.find_first_not_of(' '), item.size()));
    const size_t equals = item.find('=');
    if (equals == item.npos || equals == 0) continue;
    const std::string_view name = item.substr(0, equals);
    names.emplace_back(stand_ins.Name(name),
                       tape::StatusOf(name, item.substr(equals + 1)).value_or(""));
  }
  return names;
}

tape::Result ResultOf(const ebStarter::Outcome& outcome) {
  tape::Result result;
  result.verdict = VerdictName(outcome.verdict);
  result.reason = outcome.reason;
  if (outcome.data) {
    result.post_auth_cookie = static_cast<int>(outcome.data->post_auth_cookie.size());
    result.idp_cookies = static_cast<int>(outcome.data->idp_cookies.size());
    result.logout_url = static_cast<int>(outcome.data->idp_logout_url.size());
    result.slo_state = std::max(0, outcome.data->slo_state);
  }
  return result;
}

}  // namespace

TapeOfStep::TapeOfStep(const Options& options, std::unique_ptr<tape::Recorder> recorder)
    : path_(options.tape), request_(options.step.request), recorder_(std::move(recorder)) {}

std::string TapeOfStep::Begin(const Options& options, std::optional<TapeOfStep>& tape) {
  if (std::string problem = tape::WhyNotTo(options.tape); !problem.empty()) return problem;
  try {
    tape = TapeOfStep(options, std::make_unique<tape::Recorder>());
  } catch (const std::exception& error) {
    return error.what();
  }
  return "";
}

std::string TapeOfStep::End(const ebStarter::Outcome& outcome) {
  std::string problem;
  const auto records = recorder_->Finish(problem);
  tape::Tape tape;
  tape::StandIns stand_ins(request_.url);
  tape.step = NameOf(request_.type);
  tape.scheme = request_.url.find("s://") == 4 ? "https" : "http";
  tape.launch_cookies = NamesOf(request_.cookie, stand_ins);
  tape.entries = tape::ReadEntries(records, outcome.end.pid, recorder_->begin(), stand_ins);
  tape.result = ResultOf(outcome);
  const auto add = [&problem](const std::string& text) {
    if (!text.empty()) problem += (problem.empty() ? "" : "; ") + text;
  };
  if (tape.entries.empty()) add("the log holds nothing of this run");
  add(WriteTape(tape, path_));
  return problem;
}
