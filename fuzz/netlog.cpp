// Chromium's network log. The first byte says whether it begins as it should, and in pieces of what
// size it comes, of which nothing may depend.

#include "cef/chromium/process/NetLogParser.h"
#include "fuzz/Fuzz.h"

static std::string Results(const std::string& log, size_t piece) {
  std::string results;
  engine::NetLogParser parser;
  for (size_t at = 0; at < log.size(); at += piece) {
    parser.Feed(log.data() + at, std::min(piece, log.size() - at), [&](const auto& verdict) {
      results += verdict.host + " " + std::to_string(verdict.status) + " " + verdict.certificate;
    });
  }
  return results;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  std::string log = Text(data + 1, size - 1);
  if (data[0] & 1)
    log.insert(0, R"({"constants":{"logEventTypes":{"CERT_VERIFIER_JOB":7}},)"
                  "\n");
  Require(Results(log, log.size() + 1) == Results(log, 1 + data[0] / 2));
  return 0;
}

// Deep nesting, in both kinds of line.
void ForEachCase(const std::function<void(const std::string&)>& run) {
  const std::string deep(1 << 20, '[');
  run("\xFE" + deep + "}\n");
  run("\xFF{\"type\":7" + deep + "}\n");
}
