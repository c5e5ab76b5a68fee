#include "tests/support/LogRecords.h"

#include <cstdio>
#include <cstdlib>

#include "tests/support/TempDir.h"

namespace {

constexpr char kLineEnd[] = "\r\n";
constexpr size_t kHeaderSize = 9;  // "00106,09 "
// Longer ones are cut when they are written, while their header keeps the uncut length.
constexpr size_t kLongestWhole = 4036;

pid_t ProcessOf(const std::string& record) {
  int process = 0;
  std::sscanf(record.c_str(), "%*s %*s %*d %*s %*s %*s p%d", &process);
  return process;
}

}  // namespace

std::vector<LogRecord> ReadLog(const std::string& path, size_t begin, std::string* fault) {
  std::string all = ReadFile(path);
  if (begin <= all.size()) all.erase(0, begin);
  std::vector<LogRecord> records;
  if (fault) fault->clear();
  for (size_t at = 0; at + kHeaderSize < all.size();) {
    const size_t length = std::strtoul(all.substr(at, 5).c_str(), nullptr, 10);
    const size_t body = at + kHeaderSize;
    const bool cut = length > kLongestWhole;
    const size_t next = all.find(kLineEnd, body);
    if (next == std::string::npos) break;
    const size_t end = cut || body + length > all.size() ? next : body + length - 2;
    LogRecord record{0, all.substr(body, end - body)};
    record.process = ProcessOf(record.text);
    const bool whole = cut || (end + 2 == body + length && all.compare(end, 2, kLineEnd) == 0);
    if (!whole || record.process == 0) {
      if (fault) *fault = "broken record at byte " + std::to_string(at) + ": " + record.text;
      break;
    }
    records.push_back(std::move(record));
    at = end + 2;
  }
  return records;
}
