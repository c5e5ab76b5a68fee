// The log, into which everybody can write: split, whatever the pieces it comes in, and shown. What
// stands in an address is hidden, whatever stands around it. The first byte says how big the pieces
// are, and where the address stands.

#include <rapidjson/document.h>

#include "fuzz/Fuzz.h"
#include "tools/log/Output.h"
#include "tools/log/Record.h"
#include "tools/log/Secrets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const std::string log = Text(data + 1, size - 1);
  log_reader::Records at_once, in_pieces;
  const auto records = at_once.Feed(log);
  size_t count = 0;
  for (size_t at = 0; at < log.size(); at += 1 + data[0]) {
    count += in_pieces.Feed(log.substr(at, 1 + data[0])).size();
  }
  Require(count == records.size());
  Require(in_pieces.faults() == at_once.faults());
  for (const log_reader::Record& record : records) {
    const std::string plain = PlainText(WithoutSecrets(record));
    Require(std::none_of(plain.begin(), plain.end(), [](unsigned char c) {
      return (c < ' ' && c != '\n' && c != '\t') || c == 0x7f;
    }));
    Require(!rapidjson::Document().Parse(JsonText(record).c_str()).HasParseError());
  }
  if (log.find("qzxjkvwq") != log.npos) return 0;
  std::string message = records.empty() ? log : records.back().message;
  message.insert(message.size() * data[0] / 255, " https://h/p?code=qzxjkvwq&x ");
  Require(log_reader::HideSecrets(message).find("qzxjkvwq") == std::string::npos);
  return 0;
}
