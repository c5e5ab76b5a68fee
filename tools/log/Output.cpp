#include "tools/log/Output.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace log_reader {

namespace {

// One character, or a byte that belongs to none.
struct Character {
  uint32_t code = 0;
  size_t size = 1;
  bool valid = false;
};

// Of a text that is not empty.
Character First(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  const size_t size = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (size == 0 || text.size() < size) return {lead};
  uint32_t code = lead & (0x7Fu >> size);
  for (size_t i = 1; i < size; ++i) {
    if ((text[i] & 0xC0) != 0x80) return {lead};
    code = code << 6 | (text[i] & 0x3F);
  }
  constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kLeast[size] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return {lead};
  return {code, size, true};
}

// Control characters, line and paragraph separators, and what changes the direction of text.
bool IsHarmful(uint32_t code) {
  constexpr struct {
    uint32_t first, last;
  } kRanges[] = {{0x00, 0x08},     {0x0A, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C},
                 {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}};
  return std::any_of(std::begin(kRanges), std::end(kRanges), [code](const auto& range) {
    return code >= range.first && code <= range.last;
  });
}

std::string Valid(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const Character first = First(text);
    valid += first.valid ? text.substr(0, first.size) : "\uFFFD";
    text.remove_prefix(first.size);
  }
  return valid;
}

}  // namespace

std::string Harmless(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Character first = First(text);
    const std::string_view bytes = text.substr(0, first.size);
    text.remove_prefix(first.size);
    if (first.valid && first.code == '\n') {
      shown += "\n    ";
    } else if (first.valid && !IsHarmful(first.code)) {
      shown += bytes;
    } else if (!(first.code == '\r' && !text.empty() && text[0] == '\n')) {
      char number[12];
      snprintf(number, sizeof number, first.code < 0x80 || !first.valid ? "\\x%02x" : "\\u%04x",
               static_cast<unsigned>(first.code));
      shown += number;
    }
  }
  return shown;
}

std::string PlainText(const Record& record) { return Harmless(record.text) + "\n"; }

std::string JsonText(const Record& record) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::ASCII<>> writer(buffer);
  const auto text = [&writer](const char* key, const std::string& value) {
    writer.Key(key);
    const std::string valid = Valid(value);
    writer.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
  };
  writer.StartObject();
  text("time", record.time);
  writer.Key("level");
  writer.Int(record.level);
  text("user", record.user);
  text("program", record.program);
  text("module", record.module);
  writer.Key("process");
  writer.Int(record.process);
  text("thread", record.thread);
  text("place", record.place);
  text("tag", record.tag);
  text("message", record.message);
  writer.Key("cut");
  writer.Bool(record.cut);
  writer.EndObject();
  return buffer.GetString() + std::string("\n");
}

}  // namespace log_reader
