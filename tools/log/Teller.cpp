#include "tools/log/Teller.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include "tools/log/Judgement.h"
#include "tools/log/Texts.h"

namespace log_reader {

namespace {

using Tone = Mark::Tone;

// A request that takes longer is told apart from its answer.
constexpr long long kSlowAnswer = 2000;
// Of lines on a page's console, so many are told.
constexpr size_t kConsoleLines = 3;

class Teller {
 public:
  Teller(const Run& run, const Course& course) : run_(run), course_(course) {
    for (const Exchange& exchange : course.exchanges) {
      exchanges_[exchange.asked] = &exchange;
      exchanges_[exchange.answered] = &exchange;
    }
  }

  std::vector<Mark> Tell(const std::vector<Event>& events) {
    if (!run_.whole) {
      Note(Tone::kMinor, 0, &run_.records.front(), "log begins here",
           "The log no longer holds the beginning of this run.");
    }
    for (const Event& event : events) {
      if (const Exchange* exchange = At(event)) {
        TellExchange(*exchange, event);
      } else {
        TellOther(event);
      }
    }
    Fold(true);
    return std::move(marks_);
  }

 private:
  Mark& Note(Tone tone, long long at, const Record* record, const std::string& label,
             const std::string& text) {
    Fold(tone != Tone::kMinor);
    marks_.push_back({tone, at, "", "", label, text, record});
    return marks_.back();
  }
  Mark& Note(Tone tone, const Event& event, const std::string& label, const std::string& text) {
    return Note(tone, event.at, event.record, label, text);
  }

  // The exchange that begins or is answered with this event.
  const Exchange* At(const Event& event) const {
    const auto found = exchanges_.find(&event);
    return found == exchanges_.end() ? nullptr : found->second;
  }

  std::string Name(const std::string& host) const {
    if (host == course_.gateway) return "the gateway";
    if (host == course_.provider) return "the identity provider";
    return host;
  }

  // The same at the beginning of a sentence. A host is written as it is.
  std::string Subject(const std::string& host) const {
    std::string name = Name(host);
    if (name != host) name[0] = 'T';
    return name;
  }

  static std::string Kind(const Exchange& exchange) {
    return exchange.type == 1 ? " (a frame)" : "";
  }

  // A part of a page that changes nothing.
  bool IsDull(const Exchange& exchange) const {
    return exchange.IsPart() && !exchange.finished && !exchange.names_provider && !exchange.error &&
           !Telling(exchange);
  }

  // It carries the cookie that ends a step.
  bool Telling(const Exchange& exchange) const {
    return course_.step == Step::kSamlLogin && exchange.Carried("KXSAMLEBSTATEID");
  }

  void TellExchange(const Exchange& exchange, const Event& event) {
    if (IsDull(exchange)) {
      if (&event == exchange.asked || !exchange.asked) {
        ++parts_;
        hosts_.insert(HostOf(exchange.address));
        if (!first_part_) first_part_ = &event;
      }
      return;
    }
    const bool asking = &event == exchange.asked;
    const bool quick = exchange.asked && exchange.answered &&
                       exchange.answered->at - exchange.asked->at < kSlowAnswer;
    if (asking && quick) return;
    if (asking) {
      TellRequest(exchange);
    } else if (exchange.redirect.empty()) {
      TellAnswer(exchange);
    } else {
      TellRedirect(exchange);
    }
  }

  void TellRequest(const Exchange& exchange) {
    const std::string host = HostOf(exchange.address);
    const std::string path = PathOf(exchange.address);
    std::string text = "The browser asks " + Name(host) + " for " + path + Kind(exchange) + ".";
    Tone tone = Tone::kPlain;
    if (exchange.finished) {
      tone = Tone::kGood;
    } else if (!exchange.answered) {
      text += course_.level >= 5 || exchange.error ? " No answer came." : "";
    }
    text += LogoutChange(course_, exchange);
    Mark& mark = Note(tone, *exchange.asked, path, text);
    mark.to = host;
  }

  void TellRedirect(const Exchange& exchange) {
    const std::string host = HostOf(exchange.address);
    const std::string next = HostOf(exchange.redirect);
    std::string text = Subject(host) + " sends the browser on from " + PathOf(exchange.address) +
                       Kind(exchange) + " to " + (next == host ? "" : Name(next) + ", ") +
                       PathOf(exchange.redirect) + " (" + std::to_string(exchange.status) + ")." +
                       LogoutChange(course_, exchange);
    Mark& mark = Note(Tone::kPlain, *exchange.answered,
                      PathOf(exchange.address) + " – " + std::to_string(exchange.status) + " to " +
                          PathOf(exchange.redirect, 30),
                      text);
    mark.from = host;
    mark.to = next;
  }

  void TellAnswer(const Exchange& exchange) {
    const std::string host = HostOf(exchange.address);
    const std::string path = PathOf(exchange.address);
    std::string text = exchange.address.empty()
                           ? "An answer comes"
                           : Subject(host) + " answers " + path + Kind(exchange);
    if (exchange.status) text += " (" + std::to_string(exchange.status) + ")";
    text += ".";
    std::string label = exchange.address.empty() ? "an answer" : path;
    if (exchange.status) label += " – " + std::to_string(exchange.status);
    const Judgement judgement = JudgementOf(course_, exchange);
    label += judgement.label;
    text += judgement.text + LogoutChange(course_, exchange);
    Mark& mark = Note(judgement.tone, *exchange.answered, label, text);
    mark.from = host;
  }

  void TellOther(const Event& event) {
    const auto& words = event.words;
    switch (event.what) {
      case What::kStep:
        Note(Tone::kPlain, event, "asked for a step",
             "The client asks for a step at " + SchemeOf(words[1]) + course_.gateway +
                 PathOf(words[1]) + ".");
        break;
      case What::kCookiesCleared:
        Note(Tone::kMinor, event, "all cookies deleted",
             "All cookies are deleted, as the client wants it.");
        break;
      case What::kPlanted:
        if (words[2] == "1") {
          Note(Tone::kMinor, event, "plants " + Printable(words[0], 30),
               "The client's cookie " + Printable(words[0], 40) + " is planted for the gateway.");
        } else {
          Note(Tone::kBad, event, "cookie not planted",
               "The client's cookie " + Printable(words[0], 40) + " could not be planted.");
        }
        break;
      case What::kWindowOpened:
        Note(Tone::kMinor, event, "window opens",
             ++windows_ == 1 ? "The window opens." : "Another window opens.");
        break;
      case What::kTitle:
        if (words[0] == last_title_) break;
        last_title_ = words[0];
        Note(Tone::kMinor, event, "\"" + Foreign(words[0], 40) + "\"",
             "A page calls itself \"" + Foreign(words[0], 80) + "\".");
        break;
      case What::kConsole:
        if (++console_ == kConsoleLines + 1) {
          Note(Tone::kMinor, event, "more on the console",
               "More is written to the console, which is not told here.");
        } else if (console_ <= kConsoleLines) {
          Note(Tone::kMinor, event, "a page's console",
               "A page of " + HostOf(words[1]) + " says on its console: " + Foreign(words[0], 120));
        }
        break;
      case What::kLoadError:
        Note(Tone::kBad, event, Printable(words[1], 40),
             HostOf(words[0]) + PathOf(words[0]) +
                 " could not be loaded: " + Printable(words[1], 60) + ".")
            .from = HostOf(words[0]);
        break;
      case What::kLoadBrokenOff:
        Note(Tone::kMinor, event, "a load is broken off",
             "A load is broken off: something else took its place, or it became a download.");
        break;
      default:
        TellEnd(event);
    }
  }

  void TellEnd(const Event& event) {
    switch (event.what) {
      case What::kQuestion:
        // The finest level names the host in the next record.
        if (course_.level < 5) {
          Note(Tone::kQuestion, event, "certificate question",
               "The user is asked about a certificate that cannot be trusted.");
        }
        break;
      case What::kCertificate:
        Note(Tone::kQuestion, event, "certificate question",
             "The user is asked about the certificate of " + HostOf(event.words[0]) +
                 ", which cannot be trusted (error " + Printable(event.words[1], 10) + ").")
            .from = HostOf(event.words[0]);
        break;
      case What::kQuestionAnswered:
        if (event.words[1] == "1") {
          Note(Tone::kPlain, event, "certificate accepted",
               "The user accepts the certificate of " + HostOf(event.words[0]) + ".");
        }
        break;
      case What::kCertificateRefused:
        if (course_.refused_by_user) {
          Note(Tone::kBad, event, "certificate refused",
               "The certificate is refused, and with it the window closes.");
        } else {
          Note(Tone::kMinor, event, "question closed", "The question is closed unanswered.");
        }
        break;
      case What::kSignal:
        Note(Tone::kBad, event, "ended from outside, signal " + Printable(event.words[0], 10),
             "Signal " + Printable(event.words[0], 10) + " comes from outside.");
        break;
      case What::kClosing:
        if (Caused(event)) break;
        if (&event == course_.closing) {
          Note(Tone::kBad, event, "window closed", "The window is closed.");
        } else {
          Note(Tone::kMinor, event, "a window closes", "A window closes.");
        }
        break;
      case What::kFlush:
        if (!course_.not_written) {
          Note(Tone::kMinor, event, "result handed over", "The result is handed over.");
        }
        break;
      case What::kIdpCookiesDropped:
        Note(Tone::kBad, event, "cookies dropped",
             "The result is too long: the identity provider's cookies are left out.");
        break;
      case What::kNotWritten:
        Note(Tone::kBad, event, "result lost", "The result cannot be handed over.");
        break;
      case What::kNoTexts:
      case What::kBadRequest:
      case What::kUnknownStep:
      case What::kNoFramework:
      case What::kNoBrowser:
      case What::kNoWindow:
      case What::kError:
        Note(Tone::kBad, event, "error", "Error: " + Foreign(event.record->message, 160));
        break;
      default:
        break;
    }
  }

  // The program has closed the window itself.
  bool Caused(const Event& closing) const {
    for (const Event* cause :
         {course_.proof, course_.state, course_.signal, course_.certificate_refused}) {
      if (cause && cause < &closing) return true;
    }
    return false;
  }

  // Ends a series of parts that have not been told.
  void Fold(bool now) {
    if (!now || parts_ == 0) return;
    const bool many = parts_ > 1;
    const std::string count = std::to_string(parts_);
    const Event& first = *first_part_;
    std::vector<std::string> hosts;
    for (const std::string& host : hosts_) hosts.push_back(Name(host));
    if (hosts.size() > 4) {
      const size_t more = hosts.size() - 3;
      hosts.resize(3);
      hosts.push_back(std::to_string(more) + " more hosts");
    }
    Mark mark{Tone::kMinor, first.at, "", *hosts_.begin(), "", "", first.record};
    mark.label = many ? count + " parts of the page" : "a part of the page";
    mark.text = (many ? count + " parts of the page (pictures, scripts and the like) are"
                      : "A part of the page (a picture, script or the like) is") +
                std::string(" loaded from ") + Enumeration(hosts) + ".";
    const auto later = std::find_if(marks_.begin(), marks_.end(),
                                    [&](const Mark& other) { return other.at > mark.at; });
    marks_.insert(later, mark);
    parts_ = 0;
    hosts_.clear();
    first_part_ = nullptr;
  }

  const Run& run_;
  const Course& course_;
  std::map<const Event*, const Exchange*> exchanges_;
  std::vector<Mark> marks_;
  size_t parts_ = 0;
  std::set<std::string> hosts_;
  const Event* first_part_ = nullptr;
  size_t windows_ = 0;
  size_t console_ = 0;
  std::string last_title_;
};

}  // namespace

std::vector<Mark> MarksOf(const Run& run, const Course& course, const std::vector<Event>& events) {
  return Teller(run, course).Tell(events);
}

}  // namespace log_reader
