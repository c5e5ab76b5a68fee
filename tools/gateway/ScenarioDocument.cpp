#include "tools/gateway/ScenarioDocument.h"

#include <rapidjson/error/en.h>
#include <rapidjson/pointer.h>
#include <rapidjson/schema.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

#include "tools/gateway/GatewayFiles.h"

namespace {

using rapidjson::Document;
using rapidjson::Value;

std::string FileOf(const std::string& name) { return name + ".json"; }

std::string ReadText(const std::string& path, const std::string& shown) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw ScenarioError(shown, "", "cannot be read from " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string LineAndColumn(const std::string& text, size_t offset) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
  const auto line = std::count(text.begin(), end, '\n') + 1;
  const size_t begin = offset == 0 ? std::string::npos : text.rfind('\n', offset - 1);
  const size_t column = begin == std::string::npos ? offset + 1 : offset - begin;
  return std::to_string(line) + ":" + std::to_string(column);
}

void Parse(const std::string& file, const std::string& text, Document& document) {
  if (!document.Parse<rapidjson::kParseIterativeFlag>(text.c_str()).HasParseError()) return;
  throw ScenarioError(file + ":" + LineAndColumn(text, document.GetErrorOffset()), "",
                      rapidjson::GetParseError_En(document.GetParseError()));
}

std::string PlaceOf(const rapidjson::Pointer& pointer) {
  rapidjson::StringBuffer text;
  pointer.Stringify(text);
  return text.GetSize() ? text.GetString() : "/";
}

// Twice what a scenario needs. What follows recurses.
constexpr size_t kDeepest = 20;

void RefuseDuplicates(const std::string& file, const Value& value,
                      const rapidjson::Pointer& place) {
  if (place.GetTokenCount() > kDeepest) throw ScenarioError(file, "", "nests too deeply");
  if (value.IsArray()) {
    for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
      RefuseDuplicates(file, value[i], place.Append(i));
    }
  } else if (value.IsObject()) {
    std::set<std::string> seen;
    for (const auto& member : value.GetObject()) {
      const rapidjson::Pointer here = place.Append(member.name);
      if (!seen.insert(member.name.GetString()).second) {
        throw ScenarioError(file, PlaceOf(here), "stands here twice");
      }
      RefuseDuplicates(file, member.value, here);
    }
  }
}

std::string ListOf(const Value& names) {
  if (names.IsString()) return names.GetString();
  std::string list;
  for (const auto& name : names.GetArray()) {
    list += (list.empty() ? "" : ", ") + std::string(name.GetString());
  }
  return list;
}

// Members that the schema does not know, or asks for and does not find.
std::string Names(const Value& value, const Value& schema, bool missing) {
  std::string list;
  const auto add = [&list](const char* name) {
    list += (list.empty() ? "\"" : ", \"") + std::string(name) + "\"";
  };
  if (missing) {
    for (const auto& name : schema["required"].GetArray()) {
      if (!value.HasMember(name)) add(name.GetString());
    }
  } else {
    const auto known = schema.FindMember("properties");
    for (const auto& member : value.GetObject()) {
      if (known == schema.MemberEnd() || !known->value.HasMember(member.name)) {
        add(member.name.GetString());
      }
    }
  }
  return list;
}

std::string Describe(const std::string& keyword, const Value& value, const Value& schema) {
  const auto rule = schema.FindMember(keyword.c_str());
  if (keyword == "required") return Names(value, schema, true) + " is missing";
  if (rule == schema.MemberEnd()) return "is not allowed here (" + keyword + ")";
  if (keyword == "type") return "must be of type " + ListOf(rule->value);
  if (keyword == "enum") return "must be one of: " + ListOf(rule->value);
  if (keyword == "minimum") return "is too small";
  if (keyword == "maximum") return "is too large";
  return "does not fit (" + keyword + ")";
}

const Document& SchemaText() {
  static const std::unique_ptr<Document> document = [] {
    const std::string file = ScenarioSchema();
    auto made = std::make_unique<Document>();
    Parse(file, ReadText(file, file), *made);
    return made;
  }();
  return *document;
}

void Validate(const std::string& file, const Document& document) {
  static const rapidjson::SchemaDocument schema(SchemaText());
  rapidjson::SchemaValidator validator(schema);
  if (document.Accept(validator)) return;
  const rapidjson::Pointer place = validator.GetInvalidDocumentPointer();
  const std::string keyword = validator.GetInvalidSchemaKeyword();
  if (keyword == "additionalProperties") {
    throw ScenarioError(file, PlaceOf(place), "is not known here");
  }
  const Value* value = place.Get(document);
  const Value* rule = validator.GetInvalidSchemaPointer().Get(SchemaText());
  throw ScenarioError(file, PlaceOf(place),
                      value && rule ? Describe(keyword, *value, *rule) : keyword);
}

void CompleteFrom(const Document& base, Document& document) {
  auto& memory = document.GetAllocator();
  for (const auto& member : base.GetObject()) {
    const auto own = document.FindMember(member.name);
    if (own == document.MemberEnd()) {
      document.AddMember(Value(member.name, memory), Value(member.value, memory), memory);
    } else if (own->value.IsObject() && member.value.IsObject()) {
      for (const auto& inner : member.value.GetObject()) {
        if (own->value.HasMember(inner.name)) continue;
        own->value.AddMember(Value(inner.name, memory), Value(inner.value, memory), memory);
      }
    }
  }
}

std::unique_ptr<Document> Complete(const std::string& folder, const std::string& name,
                                   const std::string& text, std::vector<std::string> derived) {
  const std::string file = FileOf(name);
  auto document = std::make_unique<Document>();
  Parse(file, text, *document);
  RefuseDuplicates(file, *document, rapidjson::Pointer());
  const bool has_base = document->IsObject() && document->HasMember("like");
  if (has_base && (*document)["like"].IsString()) {
    const std::string base = (*document)["like"].GetString();
    const std::string path = folder + "/" + FileOf(base);
    derived.push_back(name);
    if (std::find(derived.begin(), derived.end(), base) != derived.end()) {
      throw ScenarioError(file, "/like", "\"" + base + "\" leads back here");
    }
    if (!std::filesystem::exists(path)) {
      throw ScenarioError(file, "/like", "there is no scenario \"" + base + "\"");
    }
    CompleteFrom(*Complete(folder, base, ReadText(path, FileOf(base)), derived), *document);
  }
  Validate(file, *document);
  return document;
}

}  // namespace

std::string ReadScenarioText(const std::string& folder, const std::string& name) {
  const std::string path = folder + "/" + FileOf(name);
  if (!std::filesystem::exists(path)) {
    throw ScenarioError(FileOf(name), "", "there is no such scenario in " + folder);
  }
  return ReadText(path, FileOf(name));
}

std::unique_ptr<Document> ParseScenarioDocument(const std::string& folder, const std::string& name,
                                                const std::string& text) {
  return Complete(folder, name, text, {});
}
