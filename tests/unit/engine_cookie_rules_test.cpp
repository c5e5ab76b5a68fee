#include <gtest/gtest.h>

#include "cef/chromium/cookies/CookieRules.h"

using namespace engine;

TEST(CookieRulesTest, TakesAddressesApart) {
  const struct {
    const char* text;
    const char* parts;  // scheme, host and path; empty: refused
  } kCases[] = {
      {"  HTTPS://VPN.Corp.Test\n", "https vpn.corp.test /"},
      {"http://user:pa:ss@a.test:8080/x/y?q=/#f", "http a.test /x/y"},
      {"http://[::1]:81/p", "http [::1] /p"},
      {"http:a.test\\p", "http a.test /p"},
      {"about:blank", "about  blank"},
      {"a.test/path", ""},
      {"http://a b.test/", ""},
      {"http://a.test:99999/", ""},
      {"http://[::1/", ""},
  };
  for (const auto& one : kCases) {
    Url url;
    const bool parsed = ParseUrl(one.text, &url);
    EXPECT_EQ(parsed, *one.parts != '\0') << one.text;
    if (!parsed) continue;
    EXPECT_EQ(url.scheme + " " + url.host + " " + url.path, one.parts);
  }
}

TEST(CookieRulesTest, SendsCookiesWhereTheyBelong) {
  const struct {
    const char* domain;
    const char* path;
    bool secure;
    const char* url;
    bool matches;
  } kCases[] = {
      {"a.test", "/", false, "http://A.test:8080/x", true},
      {"a.test", "/", false, "http://b.a.test/", false},
      {".a.test", "/", false, "http://b.a.test/", true},
      {".a.test", "/", false, "http://ba.test/", false},
      {".0.0.1", "/", false, "http://127.0.0.1/", false},
      {"a.test", "/in", false, "http://a.test/in/x", true},
      {"a.test", "/in", false, "http://a.test/inside", false},
      {"a.test", "/in/", false, "http://a.test/in", false},
      {"a.test", "/", true, "http://a.test/", false},
      {"a.test", "/", true, "wss://a.test/", true},
  };
  for (const auto& one : kCases) {
    Cookie cookie;
    cookie.domain = one.domain;
    cookie.path = one.path;
    cookie.secure = one.secure;
    Url url;
    ASSERT_TRUE(ParseUrl(one.url, &url));
    EXPECT_EQ(CookieMatchesUrl(cookie, url), one.matches) << one.domain << one.path << one.url;
  }
}

TEST(CookieRulesTest, PlantsThroughThePlainForm) {
  EXPECT_EQ(PlantingUrl("https://user@A.test:8443/x/y?q#f"), "http://a.test/x/y");
  EXPECT_EQ(PlantingUrl("data:,x"), "data:,x");
}

TEST(CookieRulesTest, ChecksWhatIsToBeStored) {
  constexpr auto kBad = SetCookieCheck::kInvalidUrl;
  constexpr auto kNo = SetCookieCheck::kRefused;
  constexpr auto kYes = SetCookieCheck::kStorable;
  const std::string https = "https://vpn.a.test/in/";
  const struct {
    std::string url;
    Cookie cookie;  // name, value, domain, path, secure
    SetCookieCheck result;
  } kCases[] = {
      {"http://", {"n", "v", "", "/", false}, kBad},
      {"data:,x", {"n", "v", "", "/", false}, kNo},
      {https, {"n", "a=b \"c\", d", "", "", false}, kYes},
      {https, {"", "", "", "/", false}, kNo},
      {https, {"n", "v\nw", "", "/", false}, kNo},
      {https, {"n", std::string("v\0w", 3), "", "/", false}, kNo},
      {https, {"n", "v", "", "in", false}, kNo},
      {https, {"n", "v", ".VPN.a.test", "/", false}, kYes},
      {https, {"n", "v", "x.vpn.a.test", "/", false}, kNo},
      {https, {"n", "v", "", "/", true}, kYes},
      {"http://a.test/", {"n", "v", "", "/", true}, kNo},
      {https, {"__Secure-n", "v", "", "/", false}, kNo},
      {https, {"__Host-n", "v", "", "/", true}, kYes},
      {https, {"__Host-n", "v", "a.test", "/", true}, kNo},
      {https, {"__Host-n", "v", "", "/in", true}, kNo},
  };
  for (const auto& one : kCases) {
    EXPECT_EQ(CheckSetCookie(one.url, one.cookie), one.result)
        << one.url << " " << one.cookie.name << "=" << one.cookie.value << " " << one.cookie.domain;
  }
}

// Kept on purpose: what is no address at all deletes everything.
TEST(CookieRulesTest, DeletionTakesItsScopeFromTheAddress) {
  EXPECT_EQ(CheckDeleteCookies("a.test", "n"), DeleteCookiesScope::kAll);
  EXPECT_EQ(CheckDeleteCookies("http://", "n"), DeleteCookiesScope::kInvalidUrl);
  Cookie cookie;
  Url url;
  ASSERT_TRUE(ParseUrl("http://a.test/", &url));
  cookie.domain = "A.test";
  cookie.path = "/deep";
  cookie.secure = true;
  EXPECT_TRUE(DeletionConcerns(DeleteCookiesScope::kHost, url, "", cookie));
}
