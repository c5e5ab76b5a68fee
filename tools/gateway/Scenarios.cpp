#include "tools/gateway/Scenarios.h"

#include <algorithm>
#include <filesystem>
#include <regex>

#include "tools/gateway/Texts.h"

namespace {

using rapidjson::Value;

const Value* Find(const Value& object, const char* key) {
  const auto found = object.FindMember(key);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

// Regular expressions, and what they are matched with, recurse by the length of their text.
constexpr size_t kLongestText = 1000;

// Each takes a member over when it is there; its type has been checked by the schema.
void Take(const Value& object, const char* key, std::string& out) {
  if (const Value* value = Find(object, key)) out = value->GetString();
}
void Take(const Value& object, const char* key, int& out) {
  if (const Value* value = Find(object, key)) out = value->GetInt();
}
void Take(const Value& object, const char* key, bool& out) {
  if (const Value* value = Find(object, key)) out = value->GetBool();
}
void Take(const Value& object, const char* key, std::vector<std::string>& out) {
  const Value* value = Find(object, key);
  if (!value) return;
  for (const Value& text : value->GetArray()) out.push_back(text.GetString());
}
void Take(const Value& object, const char* key, Fields& out) {
  const Value* value = Find(object, key);
  if (!value) return;
  out.clear();
  for (const auto& member : value->GetObject()) {
    out.emplace_back(member.name.GetString(), member.value.GetString());
  }
}

std::string Escaped(std::string key) {
  for (size_t at = 0; (at = key.find('/', at)) != std::string::npos; at += 2) {
    key.replace(at, 1, "~1");
  }
  return key;
}

// Turns one validated document into a scenario, and checks what a schema cannot say.
class Reader {
 public:
  Reader(const std::string& name, const rapidjson::Document& document)
      : file_(name + ".json"), document_(document) {
    scenario_.name = name;
  }

  Scenario Read() {
    Take(document_, "description", scenario_.description);
    Take(document_, "step", scenario_.step);
    Take(document_, "cookie", scenario_.cookie);
    Take(document_, "language", scenario_.language);
    Take(document_, "https", scenario_.https);
    Take(document_, "timeout", scenario_.timeout);
    Take(document_, "auto", scenario_.automatic);
    Take(document_, "nightly", scenario_.nightly);
    Fields certificates;
    Take(document_, "certificates", certificates);
    scenario_.certificates.insert(certificates.begin(), certificates.end());
    ReadHands();
    ReadExpectation();
    for (const auto& page : document_["pages"].GetObject()) {
      const std::string key = page.name.GetString();
      static const std::regex kKey("(gateway|idp|third)/[^?# ]+");
      if (key.size() > kLongestText || !std::regex_match(key, kKey))
        Fail("/pages/" + Escaped(key), "is not HOST/path");
      AddAnswers("/pages/" + Escaped(key), page.value, scenario_.pages[key]);
    }
    if (scenario_.pages.count(kStartPage) == 0) {
      Fail("/pages", std::string("has no ") + kStartPage + ", where every scenario begins");
    }
    for (const auto& [target, place] : targets_) CheckTarget(place, target);
    return scenario_;
  }

 private:
  [[noreturn]] void Fail(const std::string& place, const std::string& what) const {
    throw ScenarioError(file_, place, what);
  }

  void CheckPattern(const std::string& place, const std::string& pattern) const {
    if (pattern.size() > kLongestText) Fail(place, "is too long for a regular expression");
    try {
      const std::regex checked(pattern);
    } catch (const std::regex_error&) {
      Fail(place, "is not a regular expression: " + pattern);
    }
  }

  void ReadHands() {
    const Value* hands = Find(document_, "hands");
    for (rapidjson::SizeType i = 0; hands && i < hands->Size(); ++i) {
      const Value& value = (*hands)[i];
      const std::string place = "/hands/" + std::to_string(i);
      Hand hand;
      Take(value, "window", hand.window);
      Take(value, "after", hand.after);
      Take(value, "keys", hand.keys);
      Take(value, "type", hand.type);
      Take(value, "close", hand.close);
      CheckPattern(place + "/window", hand.window);
      if (!hand.keys.empty() + !hand.type.empty() + hand.close != 1) {
        Fail(place, "needs one of keys, type, close");
      }
      scenario_.hands.push_back(hand);
    }
  }

  void ReadExpectation() {
    const Value& value = document_["expect"];
    Expectation& expect = scenario_.expect;
    const struct {
      const char* key;
      std::string& text;
    } patterns[] = {{"postauthcookie", expect.post_auth_cookie},
                    {"samlidpcookies", expect.idp_cookies},
                    {"samlidplogoutrequesturl", expect.logout_url}};
    Take(value, "verdict", expect.verdict);
    Take(value, "reason", expect.reason);
    Take(value, "samlslostate", expect.slo_state);
    Take(value, "log", expect.log);
    Take(value, "explain", expect.explain);
    if (expect.explain.empty()) expect.explain = "The end: " + expect.verdict;
    for (const auto& pattern : patterns) {
      Take(value, pattern.key, pattern.text);
      pattern.text = TokenPattern(pattern.text);
      CheckPattern(std::string("/expect/") + pattern.key, pattern.text);
    }
  }

  void AddAnswers(const std::string& place, const Value& value, std::vector<Answer>& answers) {
    if (value.IsObject()) {
      answers.push_back(ReadAnswer(place, value));
      return;
    }
    if (value.Empty()) Fail(place, "has no answer");
    for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
      AddAnswers(place + "/" + std::to_string(i), value[i], answers);
    }
  }

  Answer ReadAnswer(const std::string& place, const Value& value) {
    Answer answer;
    if (const Value* when = Find(value, "when")) {
      Take(*when, "method", answer.when.method);
      Take(*when, "cookies", answer.when.cookies);
      Take(*when, "fields", answer.when.fields);
      Take(*when, "headers", answer.when.headers);
    }
    Take(value, "status", answer.status);
    Take(value, "headers", answer.headers);
    Take(value, "delay_ms", answer.delay_ms);
    Take(value, "redirect", answer.redirect);
    if (const Value* body = Find(value, "body")) answer.body = body->GetString();
    Take(value, "title", answer.title);
    Take(value, "text", answer.text);
    Take(value, "html", answer.html);
    Take(value, "script", answer.script);
    ReadCookies(value, answer);
    ReadWaysOn(value, answer);
    std::string broken;
    Take(value, "broken", broken);
    if (broken == "close") answer.broken = Broken::kClose;
    if (broken == "half") answer.broken = Broken::kHalf;
    if (broken == "endless") answer.broken = Broken::kEndless;
    Check(place, answer);
    return answer;
  }

  static void ReadCookies(const Value& value, Answer& answer) {
    const Value* cookies = Find(value, "set_cookies");
    if (!cookies) return;
    for (const Value& cookie : cookies->GetArray()) {
      CookieToSet set;
      if (cookie.IsString()) {
        set.text = cookie.GetString();
      } else {
        Take(cookie, "text", set.text);
        Take(cookie, "times", set.times);
      }
      answer.set_cookies.push_back(set);
    }
  }

  static void ReadWaysOn(const Value& value, Answer& answer) {
    if (const Value* form = Find(value, "form")) {
      answer.form = SignInForm{"", {}, {{"user", "ada"}, {"password", "open sesame"}}, ""};
      Take(*form, "to", answer.form->to);
      Take(*form, "fields", answer.form->fields);
      Take(*form, "asks", answer.form->asks);
      Take(*form, "error", answer.form->error);
    }
    if (const Value* post = Find(value, "post")) {
      answer.post.emplace();
      Take(*post, "to", answer.post->to);
      Take(*post, "fields", answer.post->fields);
    }
    if (const Value* go = Find(value, "go")) {
      answer.go.emplace();
      Take(*go, "to", answer.go->to);
      Take(*go, "after_ms", answer.go->after_ms);
    }
  }

  void Check(const std::string& place, const Answer& answer) {
    const bool page = !answer.title.empty();
    if (!answer.redirect.empty() + answer.body.has_value() + page +
            (answer.broken == Broken::kClose) !=
        1) {
      Fail(place, "needs one of redirect, body, title (a page), broken: close");
    }
    if (answer.form.has_value() + answer.post.has_value() + answer.go.has_value() > 1) {
      Fail(place, "takes one of form, post, go");
    }
    if (!page && (answer.form || answer.post || answer.go || !answer.text.empty() ||
                  !answer.html.empty() || !answer.script.empty())) {
      Fail(place, "is a page and needs a title");
    }
    if (!answer.redirect.empty()) targets_.emplace_back(answer.redirect, place + "/redirect");
    if (answer.form) targets_.emplace_back(answer.form->to, place + "/form/to");
    if (answer.post) targets_.emplace_back(answer.post->to, place + "/post/to");
    if (answer.go) targets_.emplace_back(answer.go->to, place + "/go/to");
    const std::pair<const char*, std::string> texts[] = {{"/text", answer.text},
                                                         {"/html", answer.html},
                                                         {"/script", answer.script},
                                                         {"/body", answer.body.value_or("")}};
    for (const auto& [key, text] : texts) {
      for (const std::string& target : AddressesIn(text))
        targets_.emplace_back(target, place + key);
    }
  }

  void CheckTarget(const std::string& place, const std::string& target) const {
    const std::string key = target.substr(0, target.find('?'));
    if (scenario_.pages.count(key) == 0) {
      Fail(place, "leads to " + key + ", a page that does not exist");
    }
  }

  const std::string file_;
  const rapidjson::Document& document_;
  Scenario scenario_;
  std::vector<std::pair<std::string, std::string>> targets_;  // with the place of each
};

}  // namespace

Scenario ReadScenario(const std::string& folder, const std::string& name) {
  return ParseScenario(folder, name, ReadScenarioText(folder, name));
}

Scenario ParseScenario(const std::string& folder, const std::string& name,
                       const std::string& text) {
  return Reader(name, *ParseScenarioDocument(folder, name, text)).Read();
}

std::vector<Scenario> ReadScenarios(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(folder, none)) {
    if (entry.path().extension() == ".json") names.push_back(entry.path().stem());
  }
  if (names.empty()) throw ScenarioError(folder, "", "holds no scenario");
  std::sort(names.begin(), names.end());
  std::vector<Scenario> scenarios;
  for (const std::string& name : names) scenarios.push_back(ReadScenario(folder, name));
  return scenarios;
}
