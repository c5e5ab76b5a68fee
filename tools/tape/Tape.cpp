#include "tools/tape/Tape.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <stdexcept>

namespace tape {

namespace {

using rapidjson::Value;

constexpr int kVersion = 1;
constexpr rapidjson::SizeType kMostEntries = 20000;
constexpr char kCheckIfCompleted[] = "CheckIfCompleted";
constexpr char kProcessCookieResponse[] = "ProcessCookieResponse";

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

std::string Quoted(const std::string& text) {
  rapidjson::StringBuffer buffer;
  Writer(buffer).String(text.c_str(), static_cast<rapidjson::SizeType>(text.size()));
  return buffer.GetString();
}

// As in a Cookie line: "NAME=VALUE", or "NAME" where there is no value to show.
std::string CookiesText(const Cookies& cookies) {
  std::string text;
  for (const auto& [name, value] : cookies) {
    text += (text.empty() ? "" : ", ") + Quoted(value.empty() ? name : name + "=" + value);
  }
  return "[" + text + "]";
}

std::string EntryText(const Entry& entry) {
  const bool asked = entry.hook == Hook::kCheckIfCompleted;
  std::string text = "{\"hook\": " + Quoted(asked ? kCheckIfCompleted : kProcessCookieResponse) +
                     ", \"of\": " + Quoted(entry.part ? "part" : "page") +
                     ", \"address\": " + Quoted(entry.address);
  if (!asked) text += ", \"cookies\": " + CookiesText(entry.cookies);
  if (entry.status) text += ", \"status\": " + std::to_string(entry.status);
  text += std::string(", \"answer\": ") + (entry.answer ? "true" : "false");
  if (entry.cut) text += ", \"cut\": true";
  return text + ", \"at_ms\": " + std::to_string(entry.at_ms) + "}";
}

[[noreturn]] void Fail(const std::string& place, const char* what) {
  throw std::runtime_error(place + " " + what);
}

const Value& Member(const Value& object, const char* key, const std::string& place) {
  const auto found = object.FindMember(key);
  if (found == object.MemberEnd()) Fail(place + "/" + key, "is missing");
  return found->value;
}

std::string Text(const Value& object, const char* key, const std::string& place) {
  const Value& value = Member(object, key, place);
  if (!value.IsString()) Fail(place + "/" + key, "must be a text");
  return value.GetString();
}

int64_t Number(const Value& object, const char* key, const std::string& place) {
  const Value& value = Member(object, key, place);
  if (!value.IsInt64() || value.GetInt64() < 0) Fail(place + "/" + key, "must be a whole number");
  return value.GetInt64();
}

int Length(const Value& object, const char* key, const std::string& place) {
  const int64_t number = Number(object, key, place);
  if (number > 1000000) Fail(place + "/" + key, "is too large");
  return static_cast<int>(number);
}

bool Truth(const Value& object, const char* key, const std::string& place) {
  const Value& value = Member(object, key, place);
  if (!value.IsBool()) Fail(place + "/" + key, "must be true or false");
  return value.GetBool();
}

std::string OneOf(const Value& object, const char* key, const std::string& place,
                  const std::vector<std::string>& allowed) {
  std::string text = Text(object, key, place);
  for (const std::string& one : allowed) {
    if (text == one) return text;
  }
  Fail(place + "/" + key, "is not known");
}

Cookies ReadCookies(const Value& object, const char* key, const std::string& place) {
  const Value& value = Member(object, key, place);
  if (!value.IsArray()) Fail(place + "/" + key, "must be a list");
  Cookies cookies;
  for (const Value& item : value.GetArray()) {
    if (!item.IsString()) Fail(place + "/" + key, "must hold texts");
    const std::string text = item.GetString();
    const size_t equals = std::min(text.find('='), text.size());
    cookies.emplace_back(text.substr(0, equals), text.substr(std::min(equals + 1, text.size())));
  }
  return cookies;
}

Entry ReadEntry(const Value& value, const std::string& place) {
  if (!value.IsObject()) Fail(place, "must be an object");
  Entry entry;
  if (OneOf(value, "hook", place, {kCheckIfCompleted, kProcessCookieResponse}) !=
      kCheckIfCompleted) {
    entry.hook = Hook::kProcessCookieResponse;
    entry.cookies = ReadCookies(value, "cookies", place);
  }
  entry.part = OneOf(value, "of", place, {"page", "part"}) == "part";
  entry.address = Text(value, "address", place);
  if (value.HasMember("status")) entry.status = Length(value, "status", place);
  entry.answer = Truth(value, "answer", place);
  entry.cut = value.HasMember("cut") && Truth(value, "cut", place);
  entry.at_ms = Number(value, "at_ms", place);
  return entry;
}

}  // namespace

std::string ToJson(const Tape& tape) {
  const Result& result = tape.result;
  std::string text =
      "{\n  \"tape\": " + std::to_string(kVersion) + ",\n  \"step\": " + Quoted(tape.step) +
      ",\n  \"scheme\": " + Quoted(tape.scheme) +
      ",\n  \"launch_cookies\": " + CookiesText(tape.launch_cookies) + ",\n  \"entries\": [";
  for (const Entry& entry : tape.entries) {
    text += (&entry == &tape.entries.front() ? "\n    " : ",\n    ") + EntryText(entry);
  }
  return text + "\n  ],\n  \"result\": {\"verdict\": " + Quoted(result.verdict) +
         ", \"reason\": " + Quoted(result.reason) +
         ", \"postauthcookie\": " + std::to_string(result.post_auth_cookie) +
         ", \"samlidpcookies\": " + std::to_string(result.idp_cookies) +
         ", \"samlidplogoutrequesturl\": " + std::to_string(result.logout_url) +
         ", \"samlslostate\": " + std::to_string(result.slo_state) + "}\n}\n";
}

Tape FromJson(const std::string& text) {
  rapidjson::Document document;
  if (document.Parse<rapidjson::kParseIterativeFlag>(text.c_str()).HasParseError()) {
    throw std::runtime_error("byte " + std::to_string(document.GetErrorOffset()) + ": " +
                             rapidjson::GetParseError_En(document.GetParseError()));
  }
  if (!document.IsObject() || !document.HasMember("tape")) Fail("it", "is no tape");
  if (Number(document, "tape", "") != kVersion) Fail("/tape", "is of another version");
  Tape tape;
  tape.step = OneOf(document, "step", "", {"saml-login", "custom", "saml-logout"});
  tape.scheme = OneOf(document, "scheme", "", {"http", "https"});
  tape.launch_cookies = ReadCookies(document, "launch_cookies", "");
  const Value& entries = Member(document, "entries", "");
  if (!entries.IsArray()) Fail("/entries", "must be a list");
  if (entries.Size() > kMostEntries) Fail("/entries", "are too many");
  for (rapidjson::SizeType i = 0; i < entries.Size(); ++i) {
    tape.entries.push_back(ReadEntry(entries[i], "/entries/" + std::to_string(i)));
  }
  const Value& result = Member(document, "result", "");
  if (!result.IsObject()) Fail("/result", "must be an object");
  tape.result.verdict = Text(result, "verdict", "/result");
  tape.result.reason = Text(result, "reason", "/result");
  tape.result.post_auth_cookie = Length(result, "postauthcookie", "/result");
  tape.result.idp_cookies = Length(result, "samlidpcookies", "/result");
  tape.result.logout_url = Length(result, "samlidplogoutrequesturl", "/result");
  tape.result.slo_state = Length(result, "samlslostate", "/result");
  return tape;
}

}  // namespace tape
