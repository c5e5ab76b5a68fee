// What a run's events add up to: its requests with their answers, and how it ended.

#ifndef TOOLS_LOG_COURSE_H_
#define TOOLS_LOG_COURSE_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/log/Events.h"

namespace log_reader {

enum class Step { kUnknown = 0, kSamlLogin = 1, kCustom = 2, kSamlLogout = 3 };

// One request and what became of it. A low log level leaves much of it unknown.
struct Exchange {
  std::string address;              // cut to 3,000 bytes; empty when the log does not say it
  int type = -1;                    // 0 a page, 1 a frame, more a part of a page; -1 unknown
  const Event* asked = nullptr;     // either may be missing
  const Event* answered = nullptr;  // the answer, or the redirect
  int status = 0;                   // of the answer; 0 unknown
  std::string redirect;             // where the answer leads on; empty for none
  std::optional<std::vector<std::string>> carried;  // the cookies of the request: "NAME=x"
  const Event* finished = nullptr;                  // it is what ended the step
  const Event* error = nullptr;
  bool names_provider = false;
  const Event* status_flags = nullptr;  // of a custom sign-in
  int logout_state = -1;                // after this address

  bool IsPart() const { return type > 1; }
  // A cookie that the request carried with `key` in its name; null for none.
  const std::string* Carried(std::string_view key) const;
};

struct Course {
  Step step = Step::kUnknown;
  std::string address;
  std::string gateway;  // its host, as the sign-ins compare it
  std::string provider;
  int level = 0;  // the finest of the records
  long long length = 0;
  std::vector<Exchange> exchanges;

  // The first event of its kind; null when it did not come.
  const Event* proof = nullptr;  // of a sign-in or a logout
  const Event* state = nullptr;  // the SAML gateway's word
  const Event* no_start = nullptr;
  const Event* signal = nullptr;
  const Event* certificate_refused = nullptr;
  bool refused_by_user = false;        // not by the signal, which closes the question as well
  const Event* question_of = nullptr;  // the last certificate question's host, and ...
  bool question_open = false;          // ... whether it was never answered by the user
  const Event* closing = nullptr;      // of the last window
  const Event* over = nullptr;         // the loop has ended
  const Event* flushed = nullptr;
  const Event* not_written = nullptr;
  const Event* title = nullptr;      // the last one
  std::vector<const Event*> stored;  // cookies that the browser was seen to hold
};

// The events must outlive it.
Course CourseOf(const Run& run, const std::vector<Event>& events);

}  // namespace log_reader

#endif  // TOOLS_LOG_COURSE_H_
