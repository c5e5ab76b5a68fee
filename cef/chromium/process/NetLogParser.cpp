#include "cef/chromium/process/NetLogParser.h"

#include <cstring>

#include "cef/chromium/base/Json.h"

namespace engine {

namespace {

// Lines hold a chain of certificates at most.
constexpr size_t kLongestLine = 4u << 20;
// Verifications that were given up never report an end.
constexpr size_t kMostUnderWay = 1000;

// The result for a self-signed device in the local network has its own bit, which clients of
// generation 80 do not know; to them it is an unknown authority.
constexpr uint32_t kSelfSignedLocalNetwork = 1u << 28;
constexpr uint32_t kAuthorityInvalid = 1u << 2;

using rapidjson::Document;

// However deep a line nests, reading it takes no deeper stack.
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag;

const JsonValue* MemberIn(const JsonValue& object, const char* outer, const char* inner) {
  const JsonValue* member = MemberAt(object, outer);
  return member ? MemberAt(*member, inner) : nullptr;
}

// The chain that the host has sent begins with its own certificate.
std::string FirstCertificate(const JsonValue& event) {
  const JsonValue* chain = MemberIn(event, "params", "certificates");
  if (!chain || !chain->IsArray() || chain->Empty() || !(*chain)[0].IsString()) return "";
  return (*chain)[0].GetString();
}

}  // namespace

void NetLogParser::Feed(const char* data, size_t size, const Result& result) {
  while (size > 0) {
    const char* end = static_cast<const char*>(memchr(data, '\n', size));
    const size_t length = end ? static_cast<size_t>(end - data) : size;
    if (line_.size() + length > kLongestLine) line_too_long_ = true;
    if (!line_too_long_) line_.append(data, length);
    if (!end) return;
    if (!line_too_long_) ReadLine(result);
    line_too_long_ = false;
    line_.clear();
    data += length + 1;
    size -= length + 1;
  }
}

void NetLogParser::ReadLine(const Result& result) {
  if (!know_constants_) {
    ReadConstants();
    return;
  }
  // Nearly all lines are about something else and are not worth parsing.
  if (verifier_job_ < 0 || line_.find(verifier_mark_) == std::string::npos) return;
  // A line is an element of an array.
  while (!line_.empty() && line_.back() != '}') line_.pop_back();
  Document event;
  event.Parse<kParseFlags>(line_.data(), line_.size());
  if (event.HasParseError()) return;
  const JsonValue* type = MemberAt(event, "type");
  const JsonValue* source = MemberIn(event, "source", "id");
  if (!type || !type->IsInt() || type->GetInt() != verifier_job_) return;
  if (!source || !source->IsInt64()) return;
  const int64_t id = source->GetInt64();
  const JsonValue* host = MemberIn(event, "params", "host");
  const JsonValue* status = MemberIn(event, "params", "cert_status");
  if (host && host->IsString()) {
    if (under_way_.size() >= kMostUnderWay) under_way_.clear();
    under_way_[id] = {host->GetString(), 0, FirstCertificate(event)};
    return;
  }
  const auto found = under_way_.find(id);
  if (found == under_way_.end() || !status || !status->IsUint()) return;
  found->second.status = status->GetUint();
  if (found->second.status & kSelfSignedLocalNetwork) found->second.status |= kAuthorityInvalid;
  result(found->second);
  under_way_.erase(found);
}

void NetLogParser::ReadConstants() {
  know_constants_ = true;
  // The line opens the text's outermost object and ends with a comma.
  while (!line_.empty() && line_.back() != '}') line_.pop_back();
  line_ += '}';
  Document log;
  log.Parse<kParseFlags>(line_.data(), line_.size());
  if (log.HasParseError()) return;
  const JsonValue* types = MemberIn(log, "constants", "logEventTypes");
  const JsonValue* job = types ? MemberAt(*types, "CERT_VERIFIER_JOB") : nullptr;
  if (!job || !job->IsInt()) return;
  verifier_job_ = job->GetInt();
  verifier_mark_ = "\"type\":" + std::to_string(verifier_job_);
}

}  // namespace engine
