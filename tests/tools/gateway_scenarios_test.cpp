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
      {"{} {}", "bad.json:1:4: The document root must not be followed"},
      {"[]", "bad.json: /: must be of type object"},
      {"{}",
       "bad.json: /: \"description\", \"step\", \"cookie\", \"expect\", \"pages\" is missing"},
      {R"({"like": "bad"})", "bad.json: /like: \"bad\" leads back here"},
      {R"({"like": "none"})", "bad.json: /like: there is no scenario \"none\""},
      {R"({"like": "worse"})", "worse.json: /stepp: is not known here"},
      {R"({"like": "good", "auto": true, "auto": false})", "bad.json: /auto: stands here twice"},
      {WithPage(R"({"title": "a", "form": {"to": "idp/next", "to": "idp/next"}})"),
       "bad.json: /pages/gateway~1start/form/to: stands here twice"},
      {R"({"like": "good", "step": "saml"})",
       "bad.json: /step: must be one of: saml-login, custom, saml-logout"},
      {R"({"like": "good", "timeout": "6"})", "bad.json: /timeout: must be of type integer"},
      {R"({"like": "good", "timeout": 0})", "bad.json: /timeout: is too small"},
      {R"({"like": "good", "certificates": {"idp": "good"}})",
       "bad.json: /certificates/idp: must be one of: unknown-authority, "},
      {R"({"like": "good", "hands": [{"window": "w", "close": true}, {"window": "w"}]})",
       "bad.json: /hands/1: needs one of keys, type, close"},
      {R"({"like": "good", "hands": [{"window": "(", "close": true}]})",
       "bad.json: /hands/0/window: is not a regular expression: ("},
      {R"({"like": "good", "pages": {"mars/x": {"title": "t"}}})",
       "bad.json: /pages/mars~1x: is not HOST/path"},
      {R"({"like": "good", "pages": {"idp/next": []}})",
       "bad.json: /pages/idp~1next: has no answer"},
      {WithPage(R"({"redirct": "idp/next"})"),
       "bad.json: /pages/gateway~1start/redirct: is not known here"},
      {WithPage(R"([{"title": "a"}, {"text": "b"}])"),
       "bad.json: /pages/gateway~1start/1: needs one of redirect, body, title"},
      {WithPage(R"({"title": "a", "redirect": "idp/next"})"),
       "bad.json: /pages/gateway~1start: needs one of redirect, body, title"},
      {WithPage(R"({"title": "a", "go": {"to": "idp/next"}, "post": {"to": "idp/next"}})"),
       "bad.json: /pages/gateway~1start: takes one of form, post, go"},
      {WithPage(R"({"redirect": "idp/next", "html": "a"})"),
       "bad.json: /pages/gateway~1start: is a page and needs a title"},
      {WithPage(R"({"title": "a", "post": {"to": "idp/nowhere?a=b"}})"),
       "bad.json: /pages/gateway~1start/post/to: leads to idp/nowhere, a page that does not exist"},
      {WithPage(R"({"title": "a", "html": "{address idp/x?a={field a}}"})"),
       "bad.json: /pages/gateway~1start/html: leads to idp/x, a page that does not exist"},
  };
  for (const auto& entry : cases) {
    const TempDir folder;
    folder.write("good.json", kGood);
    folder.write("worse.json", R"({"like": "good", "stepp": "custom"})");
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
