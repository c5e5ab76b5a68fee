// A record as it is printed.

#ifndef TOOLS_LOG_OUTPUT_H_
#define TOOLS_LOG_OUTPUT_H_

#include <string>
#include <string_view>

#include "tools/log/Record.h"

namespace log_reader {

// Text of any bytes for a terminal: what could steer one or turn the text round, and what is no
// UTF-8, is shown by its number (\x1b, \u202e). Further lines are indented.
std::string Harmless(std::string_view text);

// The record as the log has it, harmless, with a line end.
std::string PlainText(const Record& record);

// The record as a JSON object in one line, in ASCII. What is no UTF-8 becomes U+FFFD.
std::string JsonText(const Record& record);

}  // namespace log_reader

#endif  // TOOLS_LOG_OUTPUT_H_
