#include "tools/log/Ending.h"

#include <cstdlib>

#include "tools/log/Texts.h"

namespace log_reader {

namespace {

using Tone = Ending::Tone;

std::string After(const Event& event) { return " after " + Duration(event.at); }

std::string SignalName(const std::string& number) {
  switch (std::atoi(number.c_str())) {
    case 1:
      return "SIGHUP";
    case 2:
      return "SIGINT";
    case 15:
      return "SIGTERM";
    default:
      return "signal " + Printable(number, 10);
  }
}

std::string StartFailure(What what) {
  switch (what) {
    case What::kBadRequest:
      return "The request from the client could not be read, so the program ended at once.";
    case What::kNoTexts:
      return "A text catalog is missing or damaged, so the program ended at once.";
    case What::kUnknownStep:
      return "The client asked for a kind of step that is unknown, so nothing was done.";
    case What::kNoFramework:
      return "The browser framework could not be loaded, so nothing was done.";
    case What::kNoBrowser:
      return "The browser could not be started.";
    default:
      return "The browser opened no window.";
  }
}

// What the user saw last.
std::string LastPage(const Course& course) {
  const Exchange* last = nullptr;
  for (const Exchange& exchange : course.exchanges) {
    const bool page = !exchange.IsPart() && exchange.type != 1;
    if (page && !exchange.address.empty() && exchange.answered && exchange.redirect.empty()) {
      last = &exchange;
    }
  }
  if (!last) return "";
  // Without its type it may be a picture.
  std::string text = last->type == 0 ? "The last page was " : "The last answer was that to ";
  text += HostOf(last->address) + PathOf(last->address);
  // Parts and further windows change titles as well; an old title would mislead.
  if (course.title && course.title->at >= (last->answered ? last->answered->at : 0)) {
    text += ", \"" + Foreign(course.title->words[0], 60) + "\"";
  }
  return text + ".";
}

Ending Proven(const Course& course) {
  Ending ending{Tone::kGood, "", {"", course.proof->record}, {}, ""};
  const std::string time = Duration(course.proof->at);
  int state = 0;
  switch (course.proof->what) {
    case What::kHostCheckNeeded:
      ending.verdict = "host check needed";
      ending.what.text = "After " + time + " the gateway wanted a host check first.";
      break;
    case What::kHostCheckFailed:
      ending.verdict = "host check failed";
      ending.what.text = "After " + time + " the gateway's host check had failed.";
      ending.tone = Tone::kBad;
      break;
    case What::kLogoutDone:
      for (const Exchange& exchange : course.exchanges) {
        if (exchange.finished) state = exchange.logout_state;
      }
      ending.verdict = "logged out, state " + std::to_string(state);
      ending.what.text = "Logged out after " + time + " in state " + std::to_string(state) +
                         (state == 2 ? ": the browser left the gateway after its logout page."
                                     : ": the exchange with the identity provider ran to its end.");
      break;
    default:
      ending.verdict = "signed in";
      ending.what.text = "Signed in after " + time + ".";
  }
  return ending;
}

Ending Refused(const Course& course) {
  const std::string status = Printable(course.state->words[1], 40);
  Ending ending{Tone::kBad, "", {"", course.state->record}, {}, ""};
  ending.verdict = status.empty() ? "refused: no status" : "refused: status " + status;
  ending.what.text =
      "The gateway refused the sign-in" + After(*course.state) + ": KXSAMLEBSTATEID came, but " +
      (status.empty() ? "without KXSAMLEBSTATUS" : "KXSAMLEBSTATUS is " + status + ", not 1") + ".";
  return ending;
}

Ending ByCertificate(const Course& course) {
  const Event& refused = *course.certificate_refused;
  Ending ending{Tone::kBad, "certificate refused", {"", refused.record}, {}, ""};
  const bool known = course.question_of != nullptr;
  ending.what.text = "The certificate " +
                     (known ? "of " + HostOf(course.question_of->words[0]) + " " : std::string()) +
                     "was refused" + After(refused) + ", which closed the window.";
  return ending;
}

Ending BySignal(const Course& course) {
  const Event& signal = *course.signal;
  Ending ending{Tone::kBad, "ended by " + SignalName(signal.words[0]), {"", signal.record}, {}, ""};
  ending.what.text = "Ended by " + SignalName(signal.words[0]) + After(signal);
  if (course.question_open) {
    const bool known = course.question_of != nullptr;
    ending.what.text += ", while the certificate" +
                        (known ? " of " + HostOf(course.question_of->words[0]) : std::string()) +
                        " was in question";
    ending.verdict += " during a certificate question";
  }
  ending.what.text += ". The client sends it when its time limit passes, or when it is stopped.";
  return ending;
}

Ending ByClosing(const Course& course) {
  const Event& closing = *course.closing;
  Ending ending{Tone::kBad, "window closed", {"", closing.record}, {}, ""};
  ending.what.text = "The window was closed" + After(closing) +
                     ": by the user, by its page, or because the browser or the display ended; "
                     "standard error tells which.";
  return ending;
}

}  // namespace

Ending EndingOf(const Course& course) {
  Ending ending;
  if (course.proof) {
    ending = Proven(course);
  } else if (course.state) {
    ending = Refused(course);
  } else if (course.no_start) {
    ending = {Tone::kBad,
              "not started",
              {StartFailure(course.no_start->what), course.no_start->record},
              {},
              ""};
    if (course.no_start->what == What::kNoBrowser || course.no_start->what == What::kNoWindow) {
      ending.more = "Standard error and embedded-browser-doctor say more.";
    }
  } else {
    if (course.refused_by_user) {
      ending = ByCertificate(course);
    } else if (course.signal) {
      ending = BySignal(course);
    } else if (course.closing && course.over) {
      ending = ByClosing(course);
    } else {
      ending.verdict = "no end";
      ending.what.text = "The log of this run stops after " + Duration(course.length) +
                         ": it is still going on, or was killed.";
    }
    if (ending.verdict != "certificate refused" && !course.question_open) {
      ending.why = ReasonsOf(course);
      const std::string page = LastPage(course);
      if (!page.empty()) ending.why.push_back({page, nullptr});
    }
    if (course.level < 5) {
      ending.more = "At log level " + std::to_string(course.level) + " much is not written. " +
                    "For what the cookies, answers and redirects were: embedded-browser-log "
                    "--level 5, and sign in again.";
    }
  }
  if (course.not_written) {
    ending.why.insert(ending.why.begin(),
                      {"The result could not be handed over, so the client got nothing.",
                       course.not_written->record});
    ending.tone = Tone::kBad;
    ending.verdict += ", result lost";
  } else if ((course.proof || course.state) && !course.over) {
    ending.why.push_back(
        {"The log stops before the program's end, so the client may not have "
         "got the result.",
         nullptr});
  }
  return ending;
}

}  // namespace log_reader
