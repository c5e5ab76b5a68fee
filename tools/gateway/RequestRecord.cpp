#include "tools/gateway/RequestRecord.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace {

constexpr size_t kKept = 10000;

// Header bytes need not be UTF-8; everything but printable ASCII becomes "?".
std::string Printable(std::string text) {
  for (char& c : text) {
    if (c < ' ' || c > '~') c = '?';
  }
  return text;
}

}  // namespace

void RequestRecord::Add(RecordedRequest request) {
  const std::lock_guard<std::mutex> lock(mutex_);
  request.number = ++count_;
  requests_.push_back(std::move(request));
  if (requests_.size() > kKept) requests_.pop_front();
}

std::vector<RecordedRequest> RequestRecord::All() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return {requests_.begin(), requests_.end()};
}

std::string RequestRecord::ToJson() const {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  const auto member = [&writer](const char* key, const std::string& value) {
    writer.Key(key);
    writer.String(Printable(value).c_str());
  };
  writer.StartArray();
  for (const RecordedRequest& request : All()) {
    writer.StartObject();
    writer.Key("number");
    writer.Uint64(request.number);
    member("scheme", request.scheme);
    member("host", request.host);
    member("method", request.method);
    member("target", request.target);
    member("cookies", request.cookies);
    member("user_agent", request.user_agent);
    writer.EndObject();
  }
  writer.EndArray();
  return buffer.GetString();
}
