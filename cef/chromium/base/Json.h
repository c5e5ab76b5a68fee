// What DevTools messages need of JSON: lenient reading of members, and writing of parameters.

#ifndef CEF_CHROMIUM_BASE_JSON_H_
#define CEF_CHROMIUM_BASE_JSON_H_

#include <rapidjson/document.h>

#include <cstdint>
#include <string>
#include <vector>

namespace engine {

using JsonValue = rapidjson::Value;

// The member of an object; null when `object` is none or has no such member. The pointer lives as
// long as the document.
const JsonValue* MemberAt(const JsonValue& object, const char* name);

// A member's value, or the empty value when it is missing or of another type. Texts are UTF-8.
// Numbers beyond 2^53, up to which JSON's are exact, are cut to that.
std::string TextAt(const JsonValue& object, const char* name);
int64_t NumberAt(const JsonValue& object, const char* name);
bool FlagAt(const JsonValue& object, const char* name);

// "" for one that nests more than a hundred levels deep.
std::string JsonText(const JsonValue& value);
std::string JsonQuote(const std::string& text);

// A JSON array of values that are JSON already.
std::string JsonArray(const std::vector<std::string>& values);

// An object's text, built member by member.
class JsonObject {
 public:
  JsonObject& Add(const char* name, const std::string& text);
  JsonObject& Add(const char* name, const char* text);
  JsonObject& Add(const char* name, bool flag);
  JsonObject& Add(const char* name, int64_t number);
  JsonObject& Add(const char* name, int number) { return Add(name, static_cast<int64_t>(number)); }
  // `json` is a JSON value already.
  JsonObject& AddJson(const char* name, const std::string& json);

  std::string str() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_JSON_H_
