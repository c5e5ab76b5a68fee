#include "tools/log/Record.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace log_reader {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
// A writer has 4 KiB for a record, header and zero byte included; a header that says more belongs
// to one that was cut.
constexpr size_t kLongestWhole = 4036;
// No record is longer, cut or not; without a line end by then, these bytes are none.
constexpr size_t kLongest = 4096;

template <class Number>
bool Read(std::string_view digits, Number& number, int base = 10) {
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number, base);
  return error == std::errc() && end == digits.end() && !digits.empty();
}

// "00125,09 "
struct Header {
  size_t size = 0;
  size_t length = 0;  // of the record, with its line end
  int fields = 0;
};

std::optional<Header> ReadHeader(std::string_view bytes) {
  Header header;
  const size_t comma = bytes.substr(0, 12).find(',');
  if (comma == std::string_view::npos || comma < 5 || bytes.size() < comma + 4) return {};
  if (bytes[comma + 3] != ' ' || !Read(bytes.substr(0, comma), header.length)) return {};
  if (!Read(bytes.substr(comma + 1, 2), header.fields)) return {};
  if (header.fields != 8 && header.fields != 9) return {};
  header.size = comma + 4;
  return header;
}

// Takes the next field off the front; they are separated by one space.
std::string_view Take(std::string_view& text) {
  const size_t space = std::min(text.find(' '), text.size());
  const std::string_view field = text.substr(0, space);
  text.remove_prefix(std::min(space + 1, text.size()));
  return field;
}

std::optional<Record> ReadFields(std::string_view text, bool has_tag) {
  Record record;
  record.text = text;
  const std::string_view date = Take(text);
  const std::string_view time = Take(text);
  if (date.size() != 10 || date[4] != '/' || time.size() != 12 || time[2] != ':') return {};
  record.time = std::string(date) + ' ' + std::string(time);
  if (!Read(Take(text), record.level)) return {};
  record.user = Take(text);
  record.program = Take(text);
  record.module = Take(text);
  const std::string_view process = Take(text);
  if (process.size() < 2 || process[0] != 'p' || !Read(process.substr(1), record.process)) {
    return {};
  }
  const size_t dash = text.find(" - ");
  if (text.empty() || text[0] != 't' || dash == std::string_view::npos) return {};
  std::string_view thread_and_place = text.substr(1, dash - 1);
  record.thread = Take(thread_and_place);
  // Short thread numbers are padded.
  thread_and_place.remove_prefix(
      std::min(thread_and_place.find_first_not_of(' '), thread_and_place.size()));
  record.place = thread_and_place;
  text.remove_prefix(dash + 3);
  if (has_tag) {
    const size_t end = text.find('\'', 1);
    if (text.empty() || text[0] != '\'' || end == std::string_view::npos) return {};
    record.tag = text.substr(1, end - 1);
    text.remove_prefix(std::min(end + 2, text.size()));
  }
  record.message = text;
  return record;
}

}  // namespace

std::vector<Record> Records::Feed(std::string_view bytes) {
  rest_ += bytes;
  std::vector<Record> records;
  std::string_view left = rest_;
  while (!left.empty()) {
    const std::optional<Header> header = ReadHeader(left);
    const bool cut = header && header->length > kLongestWhole;
    size_t end = 0;  // of the text
    if (header && !cut) {
      end = header->size + std::max(header->length, kLineEnd.size()) - kLineEnd.size();
      if (end + kLineEnd.size() > left.size()) break;
    }
    if (!header) {
      // Somebody else's line.
      end = left.substr(0, kLongest).find('\n');
      if (end == std::string_view::npos && left.size() < kLongest) break;
      left.remove_prefix(std::min(end, kLongest - 1) + 1);
      ++faults_;
      continue;
    }
    const bool whole = end && left.substr(end, kLineEnd.size()) == kLineEnd;
    if (!whole) {
      end = left.substr(0, 2 * kLongest).find(kLineEnd);
      if (end == std::string_view::npos) {
        if (left.size() < 2 * kLongest) break;
        end = 2 * kLongest - kLineEnd.size();
      }
    }
    std::optional<Record> record;
    if (end > header->size) {
      record = ReadFields(left.substr(header->size, end - header->size), header->fields == 9);
    }
    if (record) {
      record->cut = !whole;
      if (!whole && !cut) ++faults_;
      records.push_back(std::move(*record));
    } else {
      ++faults_;
    }
    left.remove_prefix(end + kLineEnd.size());
  }
  rest_.erase(0, rest_.size() - left.size());
  return records;
}

}  // namespace log_reader
