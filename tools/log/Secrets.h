// What must not leave the house when an excerpt of the log is mailed.

#ifndef TOOLS_LOG_SECRETS_H_
#define TOOLS_LOG_SECRETS_H_

#include <string>
#include <string_view>

#include "tools/log/Record.h"

namespace log_reader {

// The message with "<32 hidden>", for 32 bytes, in the place of each value that may open something:
// of cookies, of parameters and fragments of addresses, of users and passwords in them, of whatever
// else has the form NAME=VALUE or a name that says so; and in the place of runs of 24 characters or
// more that look random. Hosts, paths, names, lengths and the status cookies stay. Any bytes.
std::string HideSecrets(std::string_view message);

// The same for a record: for its message, and the whole text.
Record WithoutSecrets(Record record);

}  // namespace log_reader

#endif  // TOOLS_LOG_SECRETS_H_
