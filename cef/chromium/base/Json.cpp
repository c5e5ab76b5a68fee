#include "cef/chromium/base/Json.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>

namespace engine {
namespace {

// Up to here JSON's numbers are exact.
constexpr double kLargest = int64_t{1} << 53;

// No text that a page or Chromium means nests so deeply; writing and the like recurse.
constexpr int kDeepest = 100;

bool NestsDeeper(const JsonValue& value, int levels) {
  if (levels == 0) return true;
  const auto deeper = [levels](const JsonValue& inner) { return NestsDeeper(inner, levels - 1); };
  if (value.IsArray()) return std::any_of(value.Begin(), value.End(), deeper);
  if (!value.IsObject()) return false;
  return std::any_of(value.MemberBegin(), value.MemberEnd(),
                     [&](const auto& member) { return deeper(member.value); });
}

}  // namespace

const JsonValue* MemberAt(const JsonValue& object, const char* name) {
  if (!object.IsObject()) return nullptr;
  const auto member = object.FindMember(name);
  return member == object.MemberEnd() ? nullptr : &member->value;
}

std::string TextAt(const JsonValue& object, const char* name) {
  const JsonValue* value = MemberAt(object, name);
  if (!value || !value->IsString()) return {};
  return {value->GetString(), value->GetStringLength()};
}

int64_t NumberAt(const JsonValue& object, const char* name) {
  const JsonValue* value = MemberAt(object, name);
  if (!value || !value->IsNumber()) return 0;
  return static_cast<int64_t>(std::clamp(value->GetDouble(), -kLargest, kLargest));
}

bool FlagAt(const JsonValue& object, const char* name) {
  const JsonValue* value = MemberAt(object, name);
  return value && value->IsBool() && value->GetBool();
}

std::string JsonText(const JsonValue& value) {
  if (NestsDeeper(value, kDeepest)) return "";
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  value.Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

std::string JsonQuote(const std::string& text) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  return {buffer.GetString(), buffer.GetSize()};
}

std::string JsonArray(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text += (text.empty() ? "" : ",") + value;
  return "[" + text + "]";
}

JsonObject& JsonObject::Add(const char* name, const std::string& text) {
  return AddJson(name, JsonQuote(text));
}

JsonObject& JsonObject::Add(const char* name, const char* text) {
  return Add(name, std::string(text));
}

JsonObject& JsonObject::Add(const char* name, bool flag) {
  return AddJson(name, flag ? "true" : "false");
}

JsonObject& JsonObject::Add(const char* name, int64_t number) {
  return AddJson(name, std::to_string(number));
}

JsonObject& JsonObject::AddJson(const char* name, const std::string& json) {
  if (!members_.empty()) members_ += ',';
  members_ += JsonQuote(name) + ":" + json;
  return *this;
}

}  // namespace engine
