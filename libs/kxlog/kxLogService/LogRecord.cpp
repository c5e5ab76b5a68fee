#include "libs/kxlog/kxLogService/LogRecord.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "libs/kxlog/kxLogService/LogFields.h"
#include "libs/kxlog/kxLogService/LogState.h"

namespace {

// No piece of a record may reach beyond the first bound, the source field beyond the second: a
// difference that is kept on purpose. What is left of the line holds the CR LF.
constexpr int kPieceBound = 4036;
constexpr int kSourceBound = 4093;

// The time as "2026/11/14 18:54:09.123". By hand, as most of a record is, since printf takes ten
// times as long.
struct Stamp {
  Stamp() {
    uint16_t now[8];
    GetLocalSystemTime(now);
    Put(0, now[0], 4);
    Put(5, now[1], 2);
    Put(8, now[3], 2);
    Put(11, now[4], 2);
    Put(14, now[5], 2);
    Put(17, now[6], 2);
    Put(20, now[7], 3);
  }

  void Put(int at, int value, int digits) {
    for (; digits > 0; value /= 10) text[at + --digits] = static_cast<char>('0' + value % 10);
  }

  char text[24] = "0000/00/00 00:00:00.000";
};

}  // namespace

LogRecord::LogRecord(int level, const char* source_file, int line, const char* module) {
  uint32_t process = 0;
  uint32_t thread = 0;
  KXGetCurrentProcessId(&process);
  KXGetCurrentThreadId(&thread);
  const char* slash = strrchr(source_file, kPathSeparator);

  AppendText(kPieceBound, Stamp().text);
  AppendText(kPieceBound, " ");
  AppendNumber(kPieceBound, level);
  for (const char* name : {CurrentUserName, CurrentProcessName, CurrentModuleName}) {
    AppendText(kPieceBound, " ");
    AppendText(kPieceBound, name);
  }
  Append(kPieceBound, " p%04d t%-3X ", static_cast<int>(process), thread);
  AppendText(kSourceBound, slash ? slash + 1 : source_file);
  AppendText(kSourceBound, ":");
  AppendNumber(kSourceBound, line);
  AppendText(kSourceBound, " - ");
  if (module == nullptr) return;
  AppendText(kPieceBound, "'");
  AppendText(kPieceBound, module);
  AppendText(kPieceBound, "' ");
}

void LogRecord::AppendMessage(const char* format, va_list args) {
  const int length = Format(kPieceBound, format, args);
  if (length >= 0) {
    length_ += length;
    return;
  }
  if (length == -1) length_ = kPieceBound;
  if (length_ < static_cast<int>(sizeof(text_))) text_[length_] = '\0';
}

void LogRecord::EndLine() {
  constexpr char kEnd[] = "\r\n";
  static_assert(kSourceBound - 1 + sizeof(kEnd) <= sizeof(text_));
  memcpy(text_ + strlen(text_), kEnd, sizeof(kEnd));
  length_ += 2;
}

void LogRecord::AppendText(int bound, std::string_view text) {
  if (length_ < bound) {
    const size_t taken = std::min(text.size(), static_cast<size_t>(bound - 1 - length_));
    memcpy(text_ + length_, text.data(), taken);
    text_[length_ + static_cast<int>(taken)] = '\0';
  }
  length_ += static_cast<int>(text.size());
}

void LogRecord::AppendNumber(int bound, int number) {
  char digits[16];
  const char* const end = std::to_chars(digits, std::end(digits), number).ptr;
  AppendText(bound, {digits, static_cast<size_t>(end - digits)});
}

void LogRecord::Append(int bound, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = Format(bound, format, args);
  va_end(args);
  if (length > 0) length_ += length;
}

int LogRecord::Format(int bound, const char* format, va_list args) {
  if (length_ >= bound) return vsnprintf(nullptr, 0, format, args);
  return vsnprintf(text_ + length_, static_cast<size_t>(bound - length_), format, args);
}
