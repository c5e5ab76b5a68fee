#include "cef/chromium/devtools/DevToolsMessage.h"

#include <rapidjson/reader.h>

#include <cstdlib>
#include <cstring>

namespace engine {
namespace {

// Texts of pages may nest deeply; the parser must not recurse with them.
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag;
constexpr char kReplacement[] = "\\ufffd";
constexpr size_t kEscapeLength = sizeof kReplacement - 1;
constexpr char kEventBegin[] = "{\"method\":\"";

// The half of a pair that is written at this place, 0 if there is none.
unsigned HalfAt(const std::string& text, size_t place) {
  if (text.compare(place, 3, "\\ud") != 0 && text.compare(place, 3, "\\uD") != 0) return 0;
  const unsigned half =
      static_cast<unsigned>(std::strtoul(text.substr(place + 2, 4).c_str(), nullptr, 16));
  return half >= 0xD800 && half <= 0xDFFF ? half : 0;
}

bool MayHaveHalves(const std::string& text) {
  return memmem(text.data(), text.size(), "\\ud", 3) || memmem(text.data(), text.size(), "\\uD", 3);
}

void ReplaceLoneHalves(std::string* text) {
  for (size_t place = text->find('\\'); place < text->size(); place = text->find('\\', place)) {
    const unsigned half = HalfAt(*text, place);
    const bool pair = half != 0 && half < 0xDC00 && HalfAt(*text, place + kEscapeLength) >= 0xDC00;
    if (pair) {
      place += 2 * kEscapeLength;
    } else if (half != 0) {
      text->replace(place, kEscapeLength, kReplacement);
      place += kEscapeLength;
    } else {
      place += 2;
    }
  }
}

// Keeps the texts and numbers of the outermost object and of its params.
class BeginReader : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, BeginReader> {
 public:
  explicit BeginReader(rapidjson::Document* message) : message_(*message) {
    message_.SetObject();
    params_.SetObject();
  }
  ~BeginReader() { message_.AddMember("params", params_, message_.GetAllocator()); }

  bool StartObject() { return Enter(); }
  bool EndObject(rapidjson::SizeType) { return Leave(); }
  bool StartArray() { return Enter(); }
  bool EndArray(rapidjson::SizeType) { return Leave(); }
  bool Key(const char* text, rapidjson::SizeType length, bool) {
    if (depth_ <= 2) key_.assign(text, length);
    return true;
  }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return Keep(rapidjson::Value(text, length, message_.GetAllocator()));
  }
  bool Int(int number) { return Keep(rapidjson::Value(number)); }
  bool Uint(unsigned number) { return Keep(rapidjson::Value(number)); }
  bool Int64(int64_t number) { return Keep(rapidjson::Value(number)); }
  bool Uint64(uint64_t number) { return Keep(rapidjson::Value(number)); }

 private:
  bool Enter() {
    if (++depth_ == 2) in_params_ = key_ == "params";
    return true;
  }
  bool Leave() {
    if (--depth_ == 1) in_params_ = false;
    return true;
  }
  bool Keep(rapidjson::Value value) {
    if (depth_ != 1 && !(depth_ == 2 && in_params_)) return true;
    auto& allocator = message_.GetAllocator();
    rapidjson::Value key(key_.data(), static_cast<rapidjson::SizeType>(key_.size()), allocator);
    (depth_ == 1 ? message_ : params_).AddMember(key, value, allocator);
    return true;
  }

  rapidjson::Document& message_;
  rapidjson::Value params_;
  std::string key_;
  int depth_ = 0;
  bool in_params_ = false;
};

void ReadBegin(const std::string& text, rapidjson::Document* message) {
  BeginReader begin(message);
  rapidjson::Reader reader;
  rapidjson::StringStream stream(text.c_str());
  reader.Parse<kParseFlags>(stream, begin);
}

bool Read(const std::string& text, rapidjson::Document* message) {
  message->Parse<kParseFlags>(text.data(), text.size());
  if (!message->HasParseError() && message->IsObject()) return true;
  ReadBegin(text, message);
  return false;
}

}  // namespace

std::string EventMethod(const std::string& text) {
  constexpr size_t kBegin = sizeof kEventBegin - 1;
  if (text.compare(0, kBegin, kEventBegin) != 0) return {};
  const size_t end = text.find('"', kBegin);
  return end == std::string::npos ? std::string() : text.substr(kBegin, end - kBegin);
}

bool ReadMessage(const std::string& text, rapidjson::Document* message) {
  if (!MayHaveHalves(text)) return Read(text, message);
  std::string repaired = text;
  ReplaceLoneHalves(&repaired);
  return Read(repaired, message);
}

}  // namespace engine
