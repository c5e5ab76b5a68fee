#include "GUI/newUI/CEFJsonUtils.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "GUI/newUI/ModuleNames.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

// Iterative, so that deep nesting cannot exhaust the stack; the language accepted is the default.
constexpr unsigned kParseFlags = rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag;

constexpr char kClearCookiesKey[] = "samlslourltoclearcookies";

bool ReadString(const rapidjson::Document& document, const char* key, std::string& out) {
  const auto member = document.FindMember(key);
  if (member == document.MemberEnd() || !member->value.IsString()) return false;
  out = member->value.GetString();
  return true;
}

rapidjson::Value CopyOf(const std::string& text, rapidjson::Document& document) {
  return rapidjson::Value(text.data(), static_cast<rapidjson::SizeType>(text.size()),
                          document.GetAllocator());
}

}  // namespace

bool JsonUtils::parseRequestForEmbBrowserInfo(const std::string& request, EmbBrowserInfo& info) {
  rapidjson::Document document;
  document.Parse<kParseFlags>(request.c_str());
  if (document.HasParseError()) {
    KXLOG(1, kStrModuleName, " parse error");
    return false;
  }
  if (!document.IsObject()) {
    KXLOG(1, kStrModuleName, " document is corrupted");
    return false;
  }
  const auto type = document.FindMember("browsertype");
  if (type == document.MemberEnd() || !type->value.IsInt()) {
    KXLOG(1, kStrModuleName, " no object 'browsertype'");
    return false;
  }
  info.browserType = type->value.GetInt();
  if (!ReadString(document, "url", info.url)) {
    KXLOG(1, kStrModuleName, " no object 'url'");
    return false;
  }
  if (!ReadString(document, "cookie", info.cookie)) {
    KXLOG(1, kStrModuleName, " no object 'cookie' ");
    return false;
  }
  if (!ReadString(document, kClearCookiesKey, info.samlSloUrlToClearCookies)) {
    KXLOG(1, kStrModuleName, "No object '%s'", kClearCookiesKey);
    return false;
  }
  return true;
}

bool JsonUtils::createRequestForEmbBrowserReturnData(std::string& out, EmbBrowserReturnData& data) {
  rapidjson::Document document;
  document.SetObject();
  addMemberStringToDocument(document, "postauthcookie", data.postAuthCookie);
  addMemberStringToDocument(document, "samlidpcookies", data.samlIdpCookies);
  addMemberStringToDocument(document, "samlidplogoutrequesturl", data.samlIdpLogoutRequestUrl);
  addMemberIntToDocument(document, "samlslostate", data.samlSloState);

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  out.assign(buffer.GetString(), buffer.GetSize());
  return true;
}

void addMemberStringToDocument(rapidjson::Document& document, std::string key, std::string value) {
  document.AddMember(CopyOf(key, document), CopyOf(value, document), document.GetAllocator());
}

void addMemberIntToDocument(rapidjson::Document& document, std::string key, int value) {
  document.AddMember(CopyOf(key, document), rapidjson::Value(value), document.GetAllocator());
}
