#include "tools/gateway/TapeScenario.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

#include "tools/gateway/GatewayFiles.h"
#include "tools/gateway/Invented.h"
#include "tools/gateway/Scenarios.h"
#include "tools/tape/StandIns.h"
#include "tools/tape/TapeFile.h"

namespace {

using Jar = std::map<std::string, std::string>;
using tape::Tape;

constexpr size_t kMostPages = 500;
constexpr int64_t kLongestPause = 300;  // before a page goes on; nobody has to think
constexpr int kForever = 600000;        // longer than any run of a scenario
constexpr char kLastTitle[] = "End of the tape";

// A page that was asked for, or a redirect on the way to the next.
struct Page {
  TapeTarget target;
  bool steers = false;         // its address holds words that decide how a logout goes on
  bool answered = false;       // as redirects are not
  bool finishes = false;       // the step has ended with it
  int status = 0;              // 0: not known
  std::optional<Jar> cookies;  // what the request carried, where that is known
  std::vector<TapeTarget> parts;
  Jar sets;  // cookies that its answer sets; an empty value deletes one
  int64_t at_ms = 0;
};

// A part is a page of its own when the step has ended with it.
bool IsPage(const tape::Entry& entry) { return !entry.part || entry.answer; }

Jar JarOf(const tape::Cookies& cookies) {
  Jar jar;
  for (const auto& [name, value] : cookies) jar[Invented(name)] = Invented(value);
  return jar;
}

std::vector<Page> PagesOf(const Tape& tape) {
  std::vector<Page> pages;
  std::map<std::string, size_t> open;  // pages without an answer yet, by address
  size_t shown = 0;                    // the page that parts belong to
  for (const tape::Entry& entry : tape.entries) {
    const bool answers = entry.hook == tape::Hook::kProcessCookieResponse;
    const auto asked = open.find(entry.address);
    if (IsPage(entry) && (!answers || (entry.part && asked == open.end()))) {
      if (pages.size() == kMostPages) throw std::runtime_error("too many pages to be played");
      open[entry.address] = pages.size();
      Page page;
      page.target = InventedTarget(entry.address);
      page.steers = !tape::DecidingWords(entry.address).empty();
      page.at_ms = entry.at_ms;
      page.finishes = !answers && entry.answer;
      page.status = entry.status;
      pages.push_back(page);
    }
    if (!answers) continue;
    const auto page = open.find(entry.address);
    if (page != open.end()) {
      shown = page->second;
      pages[shown].answered = true;
      pages[shown].finishes = entry.answer;
      pages[shown].status = entry.status;
      if (!entry.cut) pages[shown].cookies = JarOf(entry.cookies);
      open.erase(page);
    } else if (entry.part && shown < pages.size()) {
      pages[shown].parts.push_back(InventedTarget(entry.address));
    }
  }
  if (pages.empty()) throw std::runtime_error("holds no page");
  return pages;
}

// What the caller plants: what is known of it, else anything.
std::string LaunchCookies(const Tape& tape, const std::vector<Page>& pages, Jar& planted) {
  std::string text;
  const auto first = std::find_if(pages.begin(), pages.end(), [](const Page& page) {
    return page.target.host == "gateway" && page.cookies;
  });
  const auto seen = [&](const std::string& name) {
    if (first == pages.end()) return std::string();
    const auto found = first->cookies->find(name);
    return found == first->cookies->end() ? std::string() : found->second;
  };
  for (const auto& [name, status] : tape.launch_cookies) {
    const std::string known = Invented(name);
    std::string value = Invented(status);
    if (value.empty()) value = seen(known);
    if (value.empty()) value = "box";
    text += (text.empty() ? "" : tape.step == "saml-logout" ? ";;" : ";") + known + "=" + value;
    const bool of_sign_in =
        tape.step == "custom" ? known == "KXEBID" || known == "KXEBSTATUS" : known == "KXSAMLEMBID";
    if (tape.step == "saml-logout" || of_sign_in) planted[known] = value;
  }
  // The program plants this one itself.
  constexpr char kClear[] = "KXEB-CLEAR";
  if (!seen(kClear).empty()) planted[kClear] = seen(kClear);
  return text;
}

// Has the answer before set what a request carried for the first time, and delete what is gone. A
// host that was sent cookies at once, from an earlier run, gets a redirect before that sets them.
void SetCookies(std::vector<Page>& pages, const Jar& planted) {
  std::map<std::string, Jar> jars = {{"gateway", planted}};
  std::map<std::string, size_t> last;  // the host's page before
  for (size_t i = 0; i < pages.size(); ++i) {
    const std::string host = pages[i].target.host;
    Jar& jar = jars[host];
    if (pages[i].cookies && *pages[i].cookies != jar) {
      if (last.count(host) == 0) {
        Page before;
        before.target = {host, "/before", ""};
        before.at_ms = pages[i].at_ms;
        last[host] = i;
        pages.insert(pages.begin() + static_cast<std::ptrdiff_t>(i++), before);
      }
      Jar& sets = pages[last[host]].sets;
      for (const auto& [name, value] : *pages[i].cookies) {
        const auto known = jar.find(name);
        if (known == jar.end() || known->second != value) sets[name] = value;
      }
      for (const auto& [name, value] : jar) {
        if (pages[i].cookies->count(name) == 0) sets[name] = "";
      }
      jar = *pages[i].cookies;
    }
    last[host] = i;
  }
}

// Writes a scenario's document.
class Document {
 public:
  Document(const Tape& tape, std::vector<Page> pages, const std::string& cookies)
      : tape_(tape), pages_(std::move(pages)), cookies_(cookies) {
    writer_.SetIndent(' ', 2);
  }

  std::string Text() {
    writer_.StartObject();
    Put("description", std::to_string(pages_.size()) + " pages of a tape that ended as \"" +
                           tape_.result.verdict + "\"");
    Put("step", tape_.step);
    Put("cookie", cookies_);
    Put("https", tape_.scheme == "https");
    Put("auto", false);
    PutEnd();
    writer_.Key("pages");
    writer_.StartObject();
    for (size_t i = 0; i < pages_.size(); ++i) PutPage(i);
    writer_.EndObject();
    writer_.EndObject();
    return std::string(buffer_.GetString()) + "\n";
  }

 private:
  void Put(const char* key, const std::string& text) { Put(key, text.c_str()); }
  void Put(const char* key, const char* text) {
    writer_.Key(key);
    writer_.String(text);
  }
  void Put(const char* key, int number) {
    writer_.Key(key);
    writer_.Int(number);
  }
  void Put(const char* key, bool truth) {
    writer_.Key(key);
    writer_.Bool(truth);
  }

  // Each page has its number in its name, since the same address may have had several answers.
  std::string Name(size_t i) const {
    const TapeTarget& target = pages_[i].target;
    return i == 0 ? kStartPage : target.host + "/" + std::to_string(i) + target.path;
  }
  std::string Goal(size_t i) const { return Name(i) + pages_[i].target.query; }
  std::string PartName(size_t i, size_t part) const {
    const TapeTarget& target = pages_[i].parts[part];
    return target.host + "/" + std::to_string(i) + "-" + std::to_string(part) + target.path;
  }

  static std::string Pattern(int length) {
    if (length == 0) return "";
    return length > 200 ? ".+" : ".{" + std::to_string(length) + "}";
  }

  void PutEnd() {
    const Page& last = pages_.back();
    const tape::Result& result = tape_.result;
    const bool by_itself = last.finishes;
    // Where a person or a fault has ended the step, the last page stays until its end.
    const bool closed =
        !by_itself && (result.verdict == "closed by user" || result.verdict == "refused");
    const bool judged = by_itself || closed;
    Put("timeout", (judged ? 60 : 15) + static_cast<int>(pages_.size()));
    if (closed) {
      writer_.Key("hands");
      writer_.StartArray();
      writer_.StartObject();
      Put("window", std::string(kLastTitle) + "$");
      Put("after", 1);
      Put("close", true);
      writer_.EndObject();
      writer_.EndArray();
    }
    writer_.Key("expect");
    writer_.StartObject();
    Put("verdict", judged || result.verdict == "refused" ? result.verdict : "timed out");
    if (!by_itself)
      Put("reason", pages_.size() == 1 && !last.answered ? "page-loading" : "page-shown");
    Put("postauthcookie", Pattern(result.post_auth_cookie));
    Put("samlidpcookies", Pattern(result.idp_cookies));
    Put("samlidplogoutrequesturl", result.logout_url ? ".+" : "");
    Put("samlslostate", result.slo_state);
    writer_.EndObject();
  }

  void PutPage(size_t i) {
    const Page& page = pages_[i];
    const bool last = i + 1 == pages_.size();
    writer_.Key(Name(i).c_str());
    writer_.StartObject();
    if (!page.sets.empty()) {
      writer_.Key("set_cookies");
      writer_.StartArray();
      for (const auto& [name, value] : page.sets) {
        writer_.String(
            (name + "=" + value + "; Path=/" + (value.empty() ? "; Max-Age=0" : "")).c_str());
      }
      writer_.EndArray();
    }
    if (!page.answered && !last) {
      Put("redirect", Goal(i + 1));
      if (page.status > 300 && page.status < 309) Put("status", page.status);
      writer_.EndObject();
      return;
    }
    if (!page.answered && !page.finishes) Put("delay_ms", kForever);
    if (page.status >= 400 && page.status < 600) Put("status", page.status);
    Put("title", last ? kLastTitle : "Page " + std::to_string(i + 1));
    std::string parts;
    for (size_t part = 0; part < page.parts.size(); ++part) {
      parts += "<img class=pixel alt='' src='{address " + PartName(i, part) +
               page.parts[part].query + "}'>";
    }
    if (!parts.empty()) Put("html", parts);
    if (!last) {
      writer_.Key("go");
      writer_.StartObject();
      Put("to", Goal(i + 1));
      const int64_t pause = pages_[i + 1].at_ms - page.at_ms;
      Put("after_ms", static_cast<int>(std::clamp<int64_t>(pause, 0, kLongestPause)));
      writer_.EndObject();
    }
    writer_.EndObject();
    for (size_t part = 0; part < page.parts.size(); ++part) {
      writer_.Key(PartName(i, part).c_str());
      writer_.StartObject();
      writer_.Key("headers");
      writer_.StartObject();
      Put("Content-Type", "image/svg+xml");
      writer_.EndObject();
      Put("body", "<svg xmlns='http://www.w3.org/2000/svg' width='1' height='1'/>");
      writer_.EndObject();
    }
  }

  const Tape& tape_;
  const std::vector<Page> pages_;
  const std::string cookies_;
  rapidjson::StringBuffer buffer_;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer_{buffer_};
};

}  // namespace

std::string TapeName(const std::string& path) {
  std::string name = std::filesystem::path(path).stem();
  for (char& c : name) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       c == '-' || c == '_';
    if (!plain) c = '-';
  }
  return name.empty() ? "tape" : name;
}

std::string ScenarioTextOf(const Tape& tape) {
  std::vector<Page> pages = PagesOf(tape);
  Jar planted;
  const std::string cookies = LaunchCookies(tape, pages, planted);
  SetCookies(pages, planted);
  // A scenario begins at the gateway, at an address of its own.
  if (pages.front().steers || pages.front().target.host != "gateway") {
    pages.insert(pages.begin(), Page{});
  }
  return Document(tape, pages, cookies).Text();
}

Scenario ReadTapeScenario(const std::string& path) {
  const Tape tape = tape::ReadTape(path);
  try {
    return ParseScenario(ScenarioFolder(), TapeName(path), ScenarioTextOf(tape));
  } catch (const ScenarioError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}
