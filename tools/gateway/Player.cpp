#include "tools/gateway/Player.h"

#include "tools/gateway/Pages.h"
#include "tools/gateway/Texts.h"

namespace {

constexpr int kEndlessPauseMs = 200;

// Why "NAME" or "NAME=text" does not hold; empty when it does.
std::string Unmet(const char* kind, const std::string& entry, const Texts& texts,
                  const std::function<std::string(const std::string&)>& value_of) {
  const size_t equals = entry.find('=');
  const std::string name = entry.substr(0, equals);
  const std::string value = value_of(name);
  if (value.empty()) return std::string("the ") + kind + " " + name + " is missing";
  if (equals == std::string::npos || value == texts.Fill(entry.substr(equals + 1))) return "";
  return std::string("the ") + kind + " " + name + " has another value: " + value;
}

// Why an answer is not for this visit; empty when it is.
std::string WhyNot(const Condition& when, const Visit& visit, const Texts& texts) {
  if (!when.method.empty() && when.method != visit.method()) {
    return "the method is " + visit.method();
  }
  for (const std::string& entry : when.cookies) {
    const std::string why = Unmet("cookie", entry, texts,
                                  [&visit](const std::string& name) { return visit.Cookie(name); });
    if (!why.empty()) return why;
  }
  for (const std::string& entry : when.headers) {
    const std::string why = Unmet("header", entry, texts,
                                  [&visit](const std::string& name) { return visit.Header(name); });
    if (!why.empty()) return why;
  }
  for (const std::string& entry : when.fields) {
    const std::string why = Unmet(
        "field", entry, texts, [&visit](const std::string& name) { return visit.Parameter(name); });
    if (!why.empty()) return why;
  }
  return "";
}

void SetHeaders(const Answer& answer, httplib::Response& response, Texts& texts) {
  for (const CookieToSet& cookie : answer.set_cookies) {
    for (int n = 1; n <= cookie.times; ++n) {
      const std::string text = texts.Fill(cookie.text, AsItIs, n);
      texts.Remember(text);
      response.headers.emplace("Set-Cookie", text);
    }
  }
  for (const auto& [name, value] : answer.headers) {
    response.headers.emplace(name, texts.Fill(value));
  }
}

Fields Filled(const Fields& fields, const Texts& texts) {
  Fields filled;
  for (const auto& [name, value] : fields) filled.emplace_back(name, texts.Fill(value));
  return filled;
}

std::string InScript(const std::string& value) {
  const std::string literal = ScriptText(value);
  return literal.substr(1, literal.size() - 2);
}

std::string PageOf(const Answer& answer, const Scenario& scenario, const Visit& visit,
                   const Texts& texts) {
  PageParts parts;
  parts.title = texts.Fill(answer.title);
  parts.text = texts.Fill(answer.text);
  parts.html = texts.Fill(answer.html, EscapeHtml);
  parts.script = texts.Fill(answer.script, InScript);
  if (answer.form) {
    parts.action = texts.Address(answer.form->to);
    parts.hidden = Filled(answer.form->fields, texts);
    parts.asked = answer.form->asks;
    parts.error = answer.form->error;
    parts.by_itself = visit.automatic() && scenario.automatic;
  } else if (answer.post) {
    parts.action = texts.Address(answer.post->to);
    parts.hidden = Filled(answer.post->fields, texts);
    parts.by_itself = true;
  } else if (answer.go) {
    parts.next = texts.Address(answer.go->to);
    parts.after_ms = answer.go->after_ms;
  }
  return WholePage(LookOf(visit.host()), parts);
}

// Sends a part of what was promised.
void SendHalf(httplib::Response& response, const std::string& body) {
  response.set_content_provider(body.size() + 1, "text/html; charset=utf-8",
                                [body](size_t, size_t, httplib::DataSink& sink) {
                                  sink.write(body.data(), body.size() / 2);
                                  return false;
                                });
}

// Sends the body, and then blanks until the client goes or the box stops.
void SendEndless(httplib::Response& response, const std::string& body, const Delay& delay) {
  response.set_chunked_content_provider(
      "text/html; charset=utf-8", [body, delay](size_t offset, httplib::DataSink& sink) {
        const std::string part = offset == 0 ? body : " ";
        return sink.write(part.data(), part.size()) && delay(kEndlessPauseMs);
      });
}

void Send(const Answer& answer, const Scenario& scenario, Visit& visit, Texts& texts,
          const Delay& delay) {
  if (answer.delay_ms) delay(answer.delay_ms);
  if (answer.broken == Broken::kClose) return visit.CutConnection();
  httplib::Response& response = visit.response();
  SetHeaders(answer, response, texts);
  if (!answer.redirect.empty()) {
    response.set_redirect(texts.Address(answer.redirect), answer.status ? answer.status : 303);
    return;
  }
  response.status = answer.status ? answer.status : 200;
  if (answer.body) {
    const bool typed = response.has_header("Content-Type");
    const std::string type =
        typed ? response.get_header_value("Content-Type") : "text/plain; charset=utf-8";
    response.headers.erase("Content-Type");
    return visit.Send(texts.Fill(*answer.body), type);
  }
  const std::string page = PageOf(answer, scenario, visit, texts);
  if (answer.broken == Broken::kHalf) return SendHalf(response, page);
  if (answer.broken == Broken::kEndless) return SendEndless(response, page, delay);
  visit.Page(page, response.status);
}

}  // namespace

void Player::Play(Visit& visit) {
  for (const Scenario& scenario : scenarios_) {
    if (scenario.name != visit.scenario()) continue;
    const auto page = scenario.pages.find(visit.page());
    if (page == scenario.pages.end()) break;
    Texts texts(visit, scenario);
    std::string reasons;
    for (const Answer& answer : page->second) {
      const std::string why = WhyNot(answer.when, visit, texts);
      if (why.empty()) return Send(answer, scenario, visit, texts, delay_);
      reasons += (reasons.empty() ? "" : "; or ") + why;
    }
    return Refuse(visit, reasons);
  }
  visit.Page(Notice(Look::kThird, "Nothing here", "No such page: " + visit.path()), 404);
}

void Player::Refuse(Visit& visit, const std::string& why) {
  visit.Page(Notice(LookOf(visit.host()), "Not possible", "Refused: " + why + "."), 403);
  const std::lock_guard<std::mutex> lock(mutex_);
  refusals_.push_back(visit.method() + " " + visit.scenario() + ", " + visit.page() + ": " + why);
}

std::vector<std::string> Player::refusals() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return refusals_;
}
