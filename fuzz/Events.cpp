#include "fuzz/Events.h"

#include <rapidjson/document.h>

#include <functional>
#include <iterator>
#include <sstream>
#include <vector>

#include "cef/chromium/base/Json.h"

namespace {

using rapidjson::Document;
using rapidjson::Value;

// Until `found` says so for a member, in any object.
bool FindMember(Value& value, const std::function<bool(Value&, Value::MemberIterator)>& found) {
  if (value.IsArray()) {
    return std::any_of(value.Begin(), value.End(), [&](Value& v) { return FindMember(v, found); });
  }
  for (size_t i = 0; value.IsObject() && i < value.MemberCount(); ++i) {
    const auto member = value.MemberBegin() + static_cast<ptrdiff_t>(i);
    if (found(value, member) || FindMember(member->value, found)) return true;
  }
  return false;
}

const std::vector<std::string> kTwists = [] {
  std::istringstream words(
      R"(- - null 1e300 "" {} true -1 9223372036854775807 [] [{}] "\udead" "\u0000;=\n" "T1" "job-2.0")");
  std::vector<std::string> twists{std::istream_iterator<std::string>(words), {}};
  twists.push_back(std::string(kDeep, '[') + std::string(kDeep, ']'));
  return twists;
}();

}  // namespace

std::string EventText(size_t kind, int ids, const std::string& number) {
  std::string text = "{\"method\":";
  for (const char c : std::string(kEvents[kind])) {
    if (c == '`') text += number;
    if (c == '^' || c == '~') text += std::to_string(c == '^' ? ids & 3 : ids >> 2 & 3);
    if (c != '`' && c != '^' && c != '~') text += c;
  }
  return text + "}";
}

std::string Twisted(const std::string& json, int way, int place) {
  const size_t twist = static_cast<size_t>(way) % kTwists.size();
  Document document;
  document.Parse(json.c_str());
  auto& memory = document.GetAllocator();
  const bool found = FindMember(document, [&](Value& object, Value::MemberIterator member) {
    if (place-- != 0) return false;
    if (twist == 0) object.EraseMember(member);
    if (twist == 1) object.AddMember(Value(member->name, memory), Value(1), memory);
    if (twist > 1) member->value.SetString("@");
    return true;
  });
  std::string text = engine::JsonText(document);
  if (const size_t mark = text.find("\"@\""); mark != std::string::npos) {
    text.replace(mark, 3, kTwists[twist]);
  }
  return found ? text : "";
}
