#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TempDir.h"
#include "tools/gateway/Scenarios.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

constexpr char kGood[] = R"({"description": "d", "step": "custom", "cookie": "c",
  "expect": {"verdict": "signed in", "postauthcookie": "A={token}", "log": ["l"]},
  "pages": {"gateway/start": {"redirect": "idp/next?a=b"}, "idp/next": {"title": "t"}}})";

std::string WithPage(const std::string& page) {
  return R"({"like": "good", "pages": {"gateway/start": )" + page + "}}";
}

TEST(GatewayScenarios, BadFilesAreRefusedWithPlaceAndReason) {
  const struct {
    std::string text;
    const char* error;
  } cases[] = {
      {"{\n  \"step\": \"custom\"\n  \"cookie\"", "bad.json:3:3: Missing a comma"},
      {"{}",
       "bad.json: /: \"description\", \"step\", \"cookie\", \"expect\", \"pages\" is missing"},
      {R"({"like": "bad"})", "bad.json: /like: \"bad\" leads back here"},
      {R"({"like": "good", "auto": true, "auto": false})", "bad.json: /auto: stands here twice"},
      {R"({"like": "good", "step": "saml"})",
       "bad.json: /step: must be one of: saml-login, custom, saml-logout"},
      {R"({"like": "good", "hands": [{"window": "(", "close": true}]})",
       "bad.json: /hands/0/window: is not a regular expression: ("},
      {R"({"like": "good", "pages": {"mars/x": {"title": "t"}}})",
       "bad.json: /pages/mars~1x: is not HOST/path"},
      {WithPage(R"({"title": "a", "post": {"to": "idp/nowhere?a=b"}})"),
       "bad.json: /pages/gateway~1start/post/to: leads to idp/nowhere, a page that does not exist"},
      {WithPage(R"({"title": "a", "html": "{address idp/x?a={field a}}"})"),
       "bad.json: /pages/gateway~1start/html: leads to idp/x, a page that does not exist"},
  };
  for (const auto& entry : cases) {
    const TempDir folder;
    folder.write("good.json", kGood);
    folder.write("bad.json", entry.text);
    try {
      ReadScenario(folder.path(), "bad");
      ADD_FAILURE() << "taken: " << entry.text;
    } catch (const ScenarioError& error) {
      EXPECT_THAT(error.what(), StartsWith(entry.error)) << entry.text;
    }
  }
  EXPECT_THROW(ReadScenarios(TempDir().path()), ScenarioError);
}

TEST(GatewayScenarios, WhatAFileDoesNotSayComesFromItsBase) {
  const TempDir folder;
  folder.write("good.json", kGood);
  folder.write("other.json", R"({"like": "good", "cookie": "own", "expect": {"log": []},
    "pages": {"idp/next": [{"when": {"cookies": ["A"]}, "title": "1"}, {"title": "2"}]}})");
  const Scenario scenario = ReadScenario(folder.path(), "other");
  EXPECT_EQ(scenario.step, "custom");
  EXPECT_EQ(scenario.cookie, "own");
  EXPECT_EQ(scenario.expect.post_auth_cookie, "A=[0-9a-f]{32}");
  EXPECT_TRUE(scenario.expect.log.empty());
  EXPECT_EQ(scenario.pages.at("gateway/start").front().redirect, "idp/next?a=b");
  EXPECT_THAT(scenario.pages.at("idp/next").front().when.cookies, ElementsAre("A"));
  EXPECT_EQ(scenario.pages.at("idp/next").back().title, "2");
}

}  // namespace
