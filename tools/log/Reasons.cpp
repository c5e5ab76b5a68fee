#include "tools/log/Reasons.h"

#include <algorithm>
#include <cstdlib>

#include "tools/log/Texts.h"

namespace log_reader {

namespace {

constexpr char kState[] = "KXSAMLEBSTATEID";
constexpr char kSignIn[] = "KXEBID";
constexpr char kCustomStatus[] = "KXEBSTATUS";
constexpr char kLogoutPage[] = "vora-na/auth/logout.cgi";

const Record* RecordOf(const Event* event) { return event ? event->record : nullptr; }

const Record* RecordOf(const Exchange& exchange) {
  return RecordOf(exchange.answered ? exchange.answered : exchange.asked);
}

// Where and what: "gateway.example/start"
std::string Place(const Exchange& exchange) {
  return exchange.address.empty() ? "an address that the log does not name"
                                  : HostOf(exchange.address) + PathOf(exchange.address);
}

// A colon within brackets is not a port's.
std::string WithoutPort(const std::string& host) {
  const size_t colon = host.rfind(':');
  return colon == host.npos || host.back() == ']' ? host : host.substr(0, colon);
}

// What sets two hosts apart, in words; empty when they have nothing in common.
std::string Difference(const std::string& host, const std::string& gateway) {
  if (WithoutPort(host) == WithoutPort(gateway)) return "only the port differs";
  if (host == "www." + gateway || gateway == "www." + host) return "only the www. differs";
  return "";
}

class Reasons {
 public:
  explicit Reasons(const Course& course) : course_(course) {}

  std::vector<Sentence> Find() {
    if (Unreachable()) return std::move(found_);
    switch (course_.step) {
      case Step::kSamlLogin:
        Saml();
        break;
      case Step::kCustom:
        Custom();
        break;
      case Step::kSamlLogout:
        Logout();
        break;
      default:
        break;
    }
    return std::move(found_);
  }

 private:
  void Say(const std::string& text, const Record* record = nullptr) {
    found_.push_back({text, record});
  }

  bool OnGateway(const Exchange& exchange) const {
    return HostOf(exchange.address) == course_.gateway;
  }

  // The page that the window shows last is an error page.
  bool Unreachable() {
    const Exchange* last = nullptr;
    for (const Exchange& exchange : course_.exchanges) {
      if (!exchange.IsPart() && exchange.type != 1 && (exchange.error || exchange.answered)) {
        last = &exchange;
      }
    }
    if (!last || !last->error) return false;
    Say(Place(*last) + " could not be loaded: " + Printable(last->error->words[1], 60) + ".",
        last->error->record);
    return true;
  }

  // A cookie of this name that came, but does not count.
  bool CookieAstray(const char* name) {
    const Exchange* elsewhere = nullptr;
    for (const Exchange& exchange : course_.exchanges) {
      if (!OnGateway(exchange) && exchange.Carried(name)) elsewhere = &exchange;
    }
    const Event* held = nullptr;
    for (const Event* stored : course_.stored) {
      if (stored->words[0].find(name) != std::string::npos) held = stored;
    }
    const bool known = held && held->what == What::kStoredFor;
    if (known && Concerns(held->words[1])) {
      Say("The browser holds " + std::string(name) + " for " + Printable(held->words[1], 100) +
              " and the path " + PathOf(held->words[2]) + ", but no request to " + course_.gateway +
              " has carried it.",
          held->record);
    } else if (elsewhere || known) {
      const std::string host =
          elsewhere ? HostOf(elsewhere->address) : Printable(held->words[1], 100);
      std::string text = std::string(name) + " came, but for " + host + "; the step began at " +
                         course_.gateway + " and counts only that host";
      const std::string difference = Difference(host, course_.gateway);
      if (!difference.empty()) text += " (" + difference + ")";
      Say(text + ".", elsewhere ? RecordOf(*elsewhere) : held->record);
    } else if (held) {
      Say("The browser holds " + std::string(name) + ", but no request to " + course_.gateway +
              " has carried it.",
          held->record);
    }
    return elsewhere || held;
  }

  // Whether a cookie of this domain goes to the gateway.
  bool Concerns(const std::string& domain) const {
    const std::string host = "." + WithoutPort(course_.gateway);
    if (domain.empty() || domain[0] != '.') return "." + domain == host;
    return host.size() >= domain.size() &&
           host.compare(host.size() - domain.size(), domain.npos, domain) == 0;
  }

  // How far a sign-in by way of another host has come.
  void Saml() {
    if (CookieAstray(kState)) return;
    const Exchange* first_foreign = nullptr;
    const Exchange* last_foreign = nullptr;  // that was answered
    const Exchange* back = nullptr;          // a page of the gateway's after it
    const Exchange* nearly = nullptr;        // a page of a host that is nearly the gateway's
    for (const Exchange& exchange : course_.exchanges) {
      if (exchange.IsPart()) continue;
      if (OnGateway(exchange)) {
        if (first_foreign && first_foreign->answered) back = &exchange;
        continue;
      }
      if (!first_foreign) first_foreign = &exchange;
      if (exchange.answered && exchange.redirect.empty()) last_foreign = &exchange;
      if (!Difference(HostOf(exchange.address), course_.gateway).empty()) nearly = &exchange;
    }
    if (back) {
      GatewayAnswered(*back);
    } else if (nearly) {
      const std::string host = HostOf(nearly->address);
      Say("The sign-in went on at " + host + ", but the step began at " + course_.gateway +
              " and counts only that host (" + Difference(host, course_.gateway) + ").",
          RecordOf(*nearly));
    } else if (last_foreign) {
      // A low level writes answers only.
      Refusal(*last_foreign);
      Say("The sign-in was never brought back to the gateway's own host: after the page of " +
              HostOf(last_foreign->address) + " no " +
              (course_.level < 4 ? "answer came from " : "request went to ") + course_.gateway +
              ".",
          RecordOf(*last_foreign));
    } else if (first_foreign) {
      Say("The identity provider, " + HostOf(first_foreign->address) + ", never answered.",
          RecordOf(*first_foreign));
    } else if (!course_.exchanges.empty()) {
      GatewayAnswered(course_.exchanges.back());
      Say("No other host was asked, so the user never came to an identity provider.");
    }
  }

  void GatewayAnswered(const Exchange& last) {
    if (!last.answered) {
      Say(Place(last) + " never answered.", RecordOf(last));
      return;
    }
    Refusal(last);
    Say(std::string("The state cookie ") + kState + " never came: no request to " +
            course_.gateway + " carried it, the last of them for " + PathOf(last.address) + ".",
        RecordOf(last));
  }

  void Refusal(const Exchange& exchange) {
    if (exchange.status < 400) return;
    Say(Place(exchange) + " answered with status " + std::to_string(exchange.status) + ".",
        RecordOf(exchange));
  }

  void Custom() {
    const Exchange* flagged = nullptr;
    const Exchange* last = nullptr;
    for (const Exchange& exchange : course_.exchanges) {
      if (!exchange.answered || exchange.IsPart()) continue;
      last = &exchange;
      const Event* flags = exchange.status_flags;
      if (flags && std::any_of(flags->words.begin(), flags->words.end(),
                               [](const std::string& word) { return word == "1"; })) {
        flagged = &exchange;
      }
    }
    if (flagged) {
      const Record* record = flagged->status_flags->record;
      if (flagged->carried && !flagged->Carried(kSignIn)) {
        Say("The status came, but the request carried no KXEBID.", record);
      } else if (flagged->carried || course_.level >= 4) {
        Say("The status EB-FINISHED came, but without KXID.", record);
      } else {
        Say("A status came that ends the step, but KXEBID or KXID was missing.", record);
      }
      return;
    }
    if (!last) {
      if (!course_.exchanges.empty()) {
        Say(Place(course_.exchanges.back()) + " never answered.",
            RecordOf(course_.exchanges.back()));
      }
      return;
    }
    std::string text =
        "No request carried a status that ends the step (EB-FINISHED, "
        "EB-HC-NEEDED or EB-HC-FAILED in KXEBSTATUS)";
    const std::string* carried = last->Carried(kCustomStatus);
    if (carried) {
      text += "; the last one was " + Printable(*carried, 60);
    } else if (last->carried) {
      text += "; the last one carried no KXEBSTATUS";
    }
    Say(text + ".", last->status_flags ? last->status_flags->record : RecordOf(*last));
    Refusal(*last);
  }

  void Logout() {
    const bool https = SchemeOf(course_.address) == "https://";
    int state = 0;
    const Exchange* last = nullptr;
    const Exchange* page = nullptr;  // the logout page, wherever it is
    for (const Exchange& exchange : course_.exchanges) {
      if (exchange.logout_state >= 0) {
        state = exchange.logout_state;
        last = &exchange;
      }
      if (exchange.address.find(kLogoutPage) != std::string::npos) page = &exchange;
    }
    const Record* record = last ? RecordOf(last->asked) : nullptr;
    if (state == 0 && page) {
      Say("The logout page came, but at " + SchemeOf(page->address) + HostOf(page->address) +
              "; the step knows the gateway only as https://" + course_.gateway + ".",
          RecordOf(*page));
    } else if (state == 0) {
      Say("The gateway's logout page (" + std::string(kLogoutPage) + ") never came, and no " +
              "address off the gateway with a SAMLRequest.",
          record);
    } else if (state == 1) {
      Say("The gateway's logout page came, but no address off the gateway after it.", record);
    } else if (state == 3) {
      Say("The identity provider was asked to sign out (SAMLRequest), but no address off the "
          "gateway with a SAMLResponse followed.",
          record);
    } else if (state == 4) {
      Say("The identity provider's SAMLResponse came, but no address off the gateway with "
          "welcome.cgi followed.",
          record);
    }
    if (!https && state != 3 && state != 4) {
      Say("The step began at an http address, so it could only end by the identity provider's "
          "exchange (state 5).");
    }
    if (last) Refusal(*last);
  }

  const Course& course_;
  std::vector<Sentence> found_;
};

}  // namespace

std::vector<Sentence> ReasonsOf(const Course& course) { return Reasons(course).Find(); }

}  // namespace log_reader
