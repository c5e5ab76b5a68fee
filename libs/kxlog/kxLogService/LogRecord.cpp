#include "libs/kxlog/kxLogService/LogRecord.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "libs/kxlog/kxLogService/LogFields.h"
#include "libs/kxlog/kxLogService/LogState.h"

namespace {

// No piece of a record may reach beyond the first bound, the source field beyond the second: a
// difference that is kept on purpose. What is left of the line holds the CR LF.
constexpr int kPieceBound = 4036;
constexpr int kSourceBound = 4093;

}  // namespace

LogRecord::LogRecord(int level, const char* source_file, int line, const char* module) {
  uint16_t now[8];
  GetLocalSystemTime(now);
  uint32_t process = 0;
  uint32_t thread = 0;
  KXGetCurrentProcessId(&process);
  KXGetCurrentThreadId(&thread);
  const char* slash = strrchr(source_file, kPathSeparator);

  Append(kPieceBound, "%04d/%02d/%02d %02d:%02d:%02d.%03d ", now[0], now[1], now[3], now[4], now[5],
         now[6], now[7]);
  Append(kPieceBound, "%1d ", level);
  Append(kPieceBound, "%s ", CurrentUserName);
  Append(kPieceBound, "%s ", CurrentProcessName);
  Append(kPieceBound, "%s ", CurrentModuleName);
  Append(kPieceBound, "p%04d ", static_cast<int>(process));
  Append(kPieceBound, "t%-3X ", thread);
  Append(kSourceBound, "%s:%d - ", slash ? slash + 1 : source_file, line);
  if (module != nullptr) Append(kPieceBound, "'%s' ", module);
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
  const size_t end = strlen(text_);
  snprintf(text_ + end, sizeof(text_) - end, "\r\n");
  length_ += 2;
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
