#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "tools/starter/ebStarter.h"

namespace ebStarter {

std::optional<StepType> StepTypeNamed(const std::string& name) {
  if (name == "saml-login") return StepType::kSamlLogin;
  if (name == "custom") return StepType::kCustom;
  if (name == "saml-logout") return StepType::kSamlLogout;
  return std::nullopt;
}

std::string Request::ToJson() const {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  const auto text = [&writer](const char* key, const std::string& value) {
    writer.Key(key);
    writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  };
  writer.StartObject();
  writer.Key("browsertype");
  writer.Int(static_cast<int>(type));
  text("url", url);
  text("cookie", cookie);
  text("samlslourltoclearcookies", clear_cookies_url);
  writer.EndObject();
  return buffer.GetString();
}

}  // namespace ebStarter
