#include "tools/log/Judgement.h"

#include <vector>

#include "tools/log/Texts.h"

namespace log_reader {

namespace {

using Tone = Mark::Tone;

// "NAME" of each "NAME=VALUE; …"
std::vector<std::string> Names(const std::vector<std::string>& cookies) {
  std::vector<std::string> names;
  for (const std::string& cookie : cookies) {
    const std::string name = Printable(cookie.substr(0, cookie.find('=')), 40);
    names.push_back(name.empty() ? "a cookie without a name" : name);
    if (names.size() < 8 || cookies.size() < 10) continue;
    names.push_back(std::to_string(cookies.size() - names.size()) + " more cookies");
    break;
  }
  return names;
}

Judgement JudgeSaml(const Course& course, const Exchange& exchange) {
  if (exchange.finished && course.state) {
    const std::string status = Printable(course.state->words[1], 40);
    return {course.proof ? Tone::kGood : Tone::kBad,
            ", state cookie, " + (status.empty() ? "no status" : "status " + status),
            " With KXSAMLEBSTATEID " +
                (status.empty() ? "but without a status" : "and status " + status) +
                (course.proof ? ", the sign-in is done." : ", the gateway refuses the sign-in.")};
  }
  if (exchange.names_provider) {
    return {Tone::kPlain, ", provider",
            " As the first other host to answer it is taken for the identity provider."};
  }
  const bool at_gateway = HostOf(exchange.address) == course.gateway;
  if (!at_gateway && exchange.Carried("KXSAMLEBSTATEID")) {
    return {Tone::kQuestion, ", state cookie at another host",
            " The state cookie does not count here: the step began at " + course.gateway + "."};
  }
  return {Tone::kPlain, "", at_gateway ? " No state cookie, so the step goes on." : ""};
}

Judgement JudgeCustom(const Exchange& exchange) {
  const Event* flags = exchange.status_flags;
  if (!flags) return {};
  const bool ends = flags->words[0] == "1" || flags->words[1] == "1" || flags->words[2] == "1";
  const std::string status = flags->words[0] == "1"   ? "EB-FINISHED"
                             : flags->words[1] == "1" ? "EB-HC-NEEDED"
                                                      : "EB-HC-FAILED";
  if (exchange.finished) {
    return {Tone::kGood, ", " + status, " The status is " + status + ": the step is done."};
  }
  if (!ends) return {Tone::kPlain, "", " No status that ends the step."};
  return {Tone::kQuestion, ", " + status + ", a cookie missing",
          " The status is " + status + ", but a cookie that belongs to it is missing."};
}

}  // namespace

Judgement JudgementOf(const Course& course, const Exchange& exchange) {
  Judgement judgement;
  if (course.step == Step::kSamlLogin) judgement = JudgeSaml(course, exchange);
  if (course.step == Step::kCustom) judgement = JudgeCustom(exchange);
  if (exchange.carried) {
    const std::string carried =
        exchange.carried->empty() ? "no cookie" : Enumeration(Names(*exchange.carried));
    judgement.text.insert(0, " The request carried " + carried + ".");
  }
  // An error of the server's, unless there is more to be said of it.
  if (exchange.status >= 400 && judgement.tone == Tone::kPlain) judgement.tone = Tone::kBad;
  return judgement;
}

std::string LogoutChange(const Course& course, const Exchange& exchange) {
  static constexpr const char* kStates[] = {
      "",
      " This is the gateway's logout page (state 1).",
      " The browser has left the gateway after its logout page (state 2): logged out.",
      " The identity provider is asked to sign out (state 3).",
      " The identity provider has answered (state 4).",
      " The exchange is over (state 5): logged out."};
  const int state = exchange.logout_state;
  if (state < 1 || state > 5) return "";
  // The state stays until something changes it.
  for (const Exchange& before : course.exchanges) {
    if (&before == &exchange) break;
    if (before.logout_state == state) return "";
  }
  return kStates[state];
}

}  // namespace log_reader
