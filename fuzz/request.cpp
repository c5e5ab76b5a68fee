// The launch request that somebody passes, and the return data, which come out as they went in.

#include "GUI/newUI/CEFJsonUtils.h"
#include "fuzz/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = Text(data, size);
  EmbBrowserInfo info;
  JsonUtils::parseRequestForEmbBrowserInfo(text, info);
  EmbBrowserReturnData returned{text, info.cookie, info.url, info.browserType};
  std::string json;
  JsonUtils::createRequestForEmbBrowserReturnData(json, returned);
  rapidjson::Document read;
  Require(!read.Parse(json.data(), json.size()).HasParseError());
  const auto& cookie = read["postauthcookie"];
  Require(text == std::string(cookie.GetString(), cookie.GetStringLength()));
  Require(read["samlslostate"].GetInt() == info.browserType);
  return 0;
}
