// One record as it is put together, field by field, in a line of bounded length.

#ifndef LIBS_KXLOG_KXLOGSERVICE_LOGRECORD_H_
#define LIBS_KXLOG_KXLOGSERVICE_LOGRECORD_H_

#include <cstdarg>
#include <string_view>

class LogRecord {
 public:
  // Begins with all fields but the message. `module` may be null; the other arguments are those of
  // _KXLogEntryNew.
  LogRecord(int level, const char* source_file, int line, const char* module);

  void AppendMessage(const char* format, va_list args);
  void EndLine();

  const char* text() const { return text_; }

  // What the pieces would take uncut, so it may exceed what the text holds.
  int length() const { return length_; }

 private:
  // Each appends a piece, cut so that no text lies at or after `bound`.
  void AppendText(int bound, std::string_view text);
  void AppendNumber(int bound, int number);
  [[gnu::format(printf, 3, 4)]] void Append(int bound, const char* format, ...);
  int Format(int bound, const char* format, va_list args);

  char text_[4096] = {};
  int length_ = 0;
};

#endif  // LIBS_KXLOG_KXLOGSERVICE_LOGRECORD_H_
