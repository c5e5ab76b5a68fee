// What the records of a run mean. The messages are those that the program promises to write.

#ifndef TOOLS_LOG_EVENTS_H_
#define TOOLS_LOG_EVENTS_H_

#include <string>
#include <vector>

#include "tools/log/Runs.h"

namespace log_reader {

// Each with the words that its record holds, in this order.
enum class What {
  kBegan,               //
  kStep,                // type, address
  kCookiesCleared,      // address
  kPlanted,             // cookie's name, address, 1 when taken
  kLoopBegins,          //
  kWindowOpened,        //
  kRequest,             // address, type
  kChecked,             // address, 1 when it finishes the step
  kRedirect,            // address, status, new address
  kResponse,            // address, status
  kSamlAnswer,          // address
  kSamlState,           // cookie, status
  kSignedIn,            //
  kProvider,            // host
  kCustomAnswer,        // bytes of cookies
  kCustomStatus,        // finished, host check needed, host check failed: 0 or 1
  kCustomSession,       //
  kHostCheckNeeded,     //
  kHostCheckFailed,     //
  kNoSession,           //
  kLogoutState,         // address, state
  kLogoutDone,          //
  kAnswered,            // address, 1 when it finishes the step, cookies carried
  kStored,              // name of a cookie that the browser holds, length
  kStoredFor,           // the same name, domain, path
  kTitle,               // title
  kConsole,             // text, address
  kLoadError,           // address, error, number
  kLoadBrokenOff,       //
  kQuestion,            //
  kCertificate,         // address, number of the error
  kQuestionAnswered,    // address, 1 when accepted
  kCertificateRefused,  //
  kSignal,              // number
  kClosing,             //
  kClosed,              //
  kLoopEnds,            //
  kFlush,               //
  kBadRequest,          //
  kNoTexts,             //
  kUnknownStep,         //
  kNoFramework,         //
  kNoBrowser,           //
  kNoWindow,            //
  kIdpCookiesDropped,   // bytes
  kNotWritten,          //
  kError,               // the message; any other error
};

struct Event {
  What what = What::kError;
  long long at = 0;                // milliseconds since the run's first record
  std::vector<std::string> words;  // as written, any bytes
  const Record* record = nullptr;  // of the run, which must outlive it
};

// The events of a run, in order. Records without a meaning here are left out.
std::vector<Event> EventsOf(const Run& run);

// Milliseconds from one record to a later one, by their writer's clock; never less than 0.
long long Between(const Record& from, const Record& to);

}  // namespace log_reader

#endif  // TOOLS_LOG_EVENTS_H_
