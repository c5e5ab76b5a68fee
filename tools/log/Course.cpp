#include "tools/log/Course.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "tools/log/Texts.h"

namespace log_reader {

namespace {

// Addresses longer than this are cut, at different places by different messages.
constexpr size_t kLongestAddress = 3000;
constexpr long long kMoment = 100;  // milliseconds

std::vector<std::string> Split(const std::string& text, std::string_view between) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find(between, begin), text.size());
    parts.push_back(text.substr(begin, end - begin));
    begin = end + between.size();
  }
  return parts;
}

// What only one kind of step writes; the log may lack the record that names it.
Step StepOf(What what) {
  switch (what) {
    case What::kSamlAnswer:
    case What::kSamlState:
      return Step::kSamlLogin;
    case What::kCustomAnswer:
    case What::kCustomStatus:
      return Step::kCustom;
    case What::kLogoutState:
      return Step::kSamlLogout;
    default:
      return Step::kUnknown;
  }
}

class Builder {
 public:
  Builder(Course& course) : course_(course) {}

  void Take(const Event& event) {
    switch (event.what) {
      case What::kStep:
        course_.step = static_cast<Step>(std::atoi(event.words[0].c_str()));
        course_.address = event.words[1];
        course_.gateway = HostOf(event.words[1]);
        break;
      case What::kRequest:
        Ask(event).type = std::atoi(event.words[1].c_str());
        break;
      case What::kLogoutState: {
        Exchange* exchange = Open(event.words[0], false);
        if (!exchange || exchange->logout_state >= 0) exchange = &Ask(event);
        exchange->logout_state = std::atoi(event.words[1].c_str());
        asked_ = Index(*exchange);
        break;
      }
      case What::kLogoutDone:
        First(course_.proof, event);
        if (asked_ < course_.exchanges.size()) course_.exchanges[asked_].finished = &event;
        break;
      case What::kRedirect:
        Redirect(event);
        break;
      case What::kResponse: {
        Exchange& exchange = Answer(event);
        exchange.status = std::atoi(event.words[1].c_str());
        fresh_ = true;
        break;
      }
      case What::kSamlAnswer:
      case What::kCustomAnswer:
        // At the finest level the answer has been named already.
        if (!std::exchange(fresh_, false)) Answer(event);
        break;
      case What::kCustomStatus:
        if (Current()) Current()->status_flags = &event;
        break;
      case What::kAnswered:
        if (!Current() || !Fits(*Current(), event.words[0])) Answer(event);
        Current()->address = event.words[0].substr(0, kLongestAddress);
        Current()->carried = Split(event.words[2], "; ");
        if (event.words[1] == "1") Current()->finished = &event;
        current_ = kNone;
        fresh_ = false;
        break;
      case What::kProvider:
        if (course_.provider.empty()) course_.provider = Printable(event.words[0], 100);
        if (Current()) Current()->names_provider = true;
        break;
      case What::kSamlState:
        First(course_.state, event);
        if (Current()) Current()->finished = &event;
        break;
      case What::kSignedIn:
      case What::kCustomSession:
      case What::kHostCheckNeeded:
      case What::kHostCheckFailed:
        First(course_.proof, event);
        if (!course_.exchanges.empty()) course_.exchanges[answered_].finished = &event;
        break;
      case What::kLoadError: {
        Exchange* exchange = Open(event.words[0], true);
        // A low level writes no requests.
        (exchange ? *exchange : Add(event.words[0])).error = &event;
        break;
      }
      case What::kStored:
      case What::kStoredFor:
        course_.stored.push_back(&event);
        break;
      case What::kTitle:
        course_.title = &event;
        break;
      default:
        TakeEnd(event);
    }
  }

 private:
  static constexpr size_t kNone = static_cast<size_t>(-1);

  void TakeEnd(const Event& event) {
    switch (event.what) {
      case What::kBadRequest:
      case What::kNoTexts:
      case What::kUnknownStep:
      case What::kNoFramework:
      case What::kNoBrowser:
      case What::kNoWindow:
        First(course_.no_start, event);
        break;
      case What::kCertificate:
        course_.question_of = &event;
        course_.question_open = true;
        break;
      case What::kQuestionAnswered:
        if (event.words[1] == "1") course_.question_open = false;
        break;
      case What::kCertificateRefused:
        First(course_.certificate_refused, event);
        break;
      case What::kSignal:
        First(course_.signal, event);
        break;
      case What::kClosing:
        if (!course_.over) course_.closing = &event;
        break;
      case What::kLoopEnds:
        First(course_.over, event);
        break;
      case What::kFlush:
        First(course_.flushed, event);
        break;
      case What::kNotWritten:
        First(course_.not_written, event);
        break;
      default:
        break;
    }
  }

  static void First(const Event*& place, const Event& event) {
    if (!place) place = &event;
  }

  size_t Index(const Exchange& exchange) const {
    return static_cast<size_t>(&exchange - course_.exchanges.data());
  }

  Exchange* Current() { return current_ == kNone ? nullptr : &course_.exchanges[current_]; }

  // A custom sign-in's answer has no address of its own.
  static bool Fits(const Exchange& exchange, const std::string& address) {
    return exchange.address.empty() || exchange.address == address.substr(0, kLongestAddress);
  }

  // The earliest request for an address that awaits its answer, or the latest that failed.
  Exchange* Open(const std::string& address, bool any) {
    const std::string cut = address.substr(0, kLongestAddress);
    Exchange* found = nullptr;
    for (auto exchange = course_.exchanges.rbegin(); exchange != course_.exchanges.rend();
         ++exchange) {
      if (exchange->address != cut || (exchange->answered && !any)) continue;
      found = &*exchange;
      if (any) break;
    }
    return found;
  }

  Exchange& Add(const std::string& address) {
    course_.exchanges.emplace_back();
    course_.exchanges.back().address = address.substr(0, kLongestAddress);
    return course_.exchanges.back();
  }

  Exchange& Ask(const Event& event) {
    Exchange& exchange = Add(event.words[0]);
    exchange.asked = &event;
    return exchange;
  }

  Exchange& Answer(const Event& event) {
    const bool named = event.what != What::kCustomAnswer;
    Exchange* exchange = named ? Open(event.words[0], false) : nullptr;
    if (!exchange) exchange = &Add(named ? event.words[0] : "");
    exchange->answered = &event;
    current_ = answered_ = Index(*exchange);
    return *exchange;
  }

  void Redirect(const Event& event) {
    Exchange* exchange = Open(event.words[0], false);
    if (!exchange) exchange = &Add(event.words[0]);
    exchange->answered = &event;
    exchange->status = std::atoi(event.words[1].c_str());
    exchange->redirect = event.words[2];
  }

  Course& course_;
  size_t asked_ = kNone;
  size_t current_ = kNone;  // the exchange whose answer the session looks at
  size_t answered_ = 0;     // the last that was answered
  bool fresh_ = false;      // its session has not looked at it yet
};

}  // namespace

const std::string* Exchange::Carried(std::string_view key) const {
  if (!carried) return nullptr;
  for (const std::string& cookie : *carried) {
    if (cookie.substr(0, cookie.find('=')).find(key) != std::string::npos) return &cookie;
  }
  return nullptr;
}

Course CourseOf(const Run& run, const std::vector<Event>& events) {
  Course course;
  for (const Record& record : run.records) course.level = std::max(course.level, record.level);
  course.length = Between(run.records.front(), run.records.back());
  Builder builder(course);
  for (const Event& event : events) {
    builder.Take(event);
    if (course.step == Step::kUnknown) course.step = StepOf(event.what);
  }
  const Event* const refused = course.certificate_refused;
  const Event* const signal = course.signal;
  // The signal may be told a moment after what it causes.
  course.refused_by_user = refused && (!signal || refused->at + kMoment < signal->at);
  if (refused) course.question_open = !course.refused_by_user;
  return course;
}

}  // namespace log_reader
