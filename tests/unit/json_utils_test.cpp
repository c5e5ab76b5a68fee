#include <gtest/gtest.h>

#include "GUI/newUI/CEFJsonUtils.h"
#include "tests/support/LogTrace.h"

namespace {

std::string Request(const std::string& type, const std::string& rest) {
  return "{\"browsertype\":" + type + rest + "}";
}

TEST(LaunchRequest, ReadsAllFourMembers) {
  EmbBrowserInfo info;
  EXPECT_EQ(info.browserType, 0);
  ASSERT_TRUE(JsonUtils::parseRequestForEmbBrowserInfo(
      " {\"other\":[1], \"Url\":1, \"cookie\":\"a=\\u20ac\\u0000cut\", \"url\":\"https://g/\", "
      "\"url\":\"second\", \"samlslourltoclearcookies\":\"\", \"browsertype\":-2147483648} \n",
      info));
  EXPECT_EQ(info.browserType, INT32_MIN);
  EXPECT_EQ(info.url, "https://g/");
  EXPECT_EQ(info.cookie, "a=\xE2\x82\xAC");
  EXPECT_EQ(info.samlSloUrlToClearCookies, "");
}

TEST(LaunchRequest, NamesTheFirstFault) {
  const std::string texts = ",\"url\":\"u\",\"cookie\":\"c\",\"samlslourltoclearcookies\":\"s\"";
  const std::string parse = "1 'OrbUI'  parse error";
  const std::string corrupted = "1 'OrbUI'  document is corrupted";
  const std::string type = "1 'OrbUI'  no object 'browsertype'";
  const struct {
    std::string request;
    std::string log;
  } cases[] = {{"", parse},
               {Request("1", texts) + " x", parse},
               {Request("1", texts + ","), parse},
               {Request("NaN", texts), parse},
               {"/**/" + Request("1", texts), parse},
               {std::string(100000, '['), parse},
               {std::string(100000, '[') + std::string(100000, ']'), corrupted},
               {Request("\"1\"", texts), type},
               {Request("1.0", texts), type},
               {Request("2147483648", texts), type},
               {Request("1", ",\"url\":1"), "1 'OrbUI'  no object 'url'"},
               {Request("1", ",\"url\":\"u\",\"cookie\":null"), "1 'OrbUI'  no object 'cookie' "},
               {Request("3", ",\"url\":\"u\",\"cookie\":\"c\""),
                "1 'OrbUI' No object 'samlslourltoclearcookies'"}};
  LogTrace log;
  for (const auto& c : cases) {
    EmbBrowserInfo info;
    EXPECT_FALSE(JsonUtils::parseRequestForEmbBrowserInfo(c.request, info)) << c.request;
    EXPECT_EQ(log.Take(), std::vector<std::string>{c.log}) << c.request.substr(0, 80);
  }
}

TEST(ReturnData, IsWrittenCompactlyInFixedOrder) {
  std::string json = "old";
  EmbBrowserReturnData data;
  EXPECT_TRUE(JsonUtils::createRequestForEmbBrowserReturnData(json, data));
  EXPECT_EQ(json,
            "{\"postauthcookie\":\"\",\"samlidpcookies\":\"\","
            "\"samlidplogoutrequesturl\":\"\",\"samlslostate\":0}");

  data.samlSloState = -1;
  data.samlIdpLogoutRequestUrl = "https://i/?a=\"b\\c\"";
  data.samlIdpCookies = std::string("\b\f\n\r\t\x01\x1F\x7F\0z", 10);
  data.postAuthCookie = "k=\xC3\xA9\xFF";
  EXPECT_TRUE(JsonUtils::createRequestForEmbBrowserReturnData(json, data));
  EXPECT_EQ(json,
            "{\"postauthcookie\":\"k=\xC3\xA9\xFF\","
            "\"samlidpcookies\":\"\\b\\f\\n\\r\\t\\u0001\\u001F\x7F\\u0000z\","
            "\"samlidplogoutrequesturl\":\"https://i/?a=\\\"b\\\\c\\\"\",\"samlslostate\":-1}");
}

}  // namespace
