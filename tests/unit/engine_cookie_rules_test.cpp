#include <gtest/gtest.h>

#include "cef/chromium/CookieRules.h"

using namespace engine;

TEST(CookieRulesTest, TakesAddressesApart) {
  const struct {
    const char* text;
    const char* scheme;  // null: refused
    const char* host;
    int port;
    const char* path;
  } kCases[] = {
      {"https://VPN.Corp.Test", "https", "vpn.corp.test", 443, "/"},
      {"  HTTP://a.test:8080/x/y?q=/#f\n", "http", "a.test", 8080, "/x/y"},
      {"http://a.test?q", "http", "a.test", 80, "/"},
      {"https://user:pa:ss@a.test:/p", "https", "a.test", 443, "/p"},
      {"http://[::1]:81/p", "http", "[::1]", 81, "/p"},
      {"http:\\\\a.test\\p", "http", "a.test", 80, "/p"},
      {"http:a.test/p", "http", "a.test", 80, "/p"},
      {"wss://a.test/", "wss", "a.test", 443, "/"},
      {"data:text/html,x", "data", "", 0, "text/html,x"},
      {"about:blank", "about", "", 0, "blank"},
      {"a.test/path", nullptr, "", 0, ""},
      {"", nullptr, "", 0, ""},
      {"//a.test/", nullptr, "", 0, ""},
      {"1http://a.test/", nullptr, "", 0, ""},
      {"http://", nullptr, "", 0, ""},
      {"http://a b.test/", nullptr, "", 0, ""},
      {"http://a.test:99999/", nullptr, "", 0, ""},
      {"http://a.test:8x/", nullptr, "", 0, ""},
      {"http://[::1/", nullptr, "", 0, ""},
  };
  for (const auto& one : kCases) {
    SCOPED_TRACE(one.text);
    Url url;
    ASSERT_EQ(ParseUrl(one.text, &url), one.scheme != nullptr);
    if (!one.scheme) continue;
    EXPECT_EQ(url.scheme, one.scheme);
    EXPECT_EQ(url.host, one.host);
    EXPECT_EQ(url.port, one.port);
    EXPECT_EQ(url.path, one.path);
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
      {".a.test", "/", false, "http://a.test/", true},
      {".a.test", "/", false, "http://ba.test/", false},
      {".0.0.1", "/", false, "http://127.0.0.1/", false},
      {"a.test", "/in", false, "http://a.test/in", true},
      {"a.test", "/in", false, "http://a.test/in/x", true},
      {"a.test", "/in", false, "http://a.test/inside", false},
      {"a.test", "/in/", false, "http://a.test/in/x", true},
      {"a.test", "/in/", false, "http://a.test/in", false},
      {"a.test", "/", true, "http://a.test/", false},
      {"a.test", "/", true, "https://a.test/", true},
      {"a.test", "/", true, "wss://a.test/", true},
      {"a.test", "/", false, "ftp://a.test/", false},
  };
  for (const auto& one : kCases) {
    StoredCookie cookie;
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
  EXPECT_EQ(PlantingUrl("wss://a.test"), "http://a.test/");
  EXPECT_EQ(PlantingUrl("data:,x"), "data:,x");
  EXPECT_EQ(PlantingUrl("nothing"), "nothing");
}

TEST(CookieRulesTest, ChecksWhatIsToBeStored) {
  constexpr auto kBad = SetCookieCheck::kInvalidUrl;
  constexpr auto kNo = SetCookieCheck::kRefused;
  constexpr auto kYes = SetCookieCheck::kStorable;
  const std::string https = "https://vpn.a.test/in/";
  const struct {
    std::string url;
    WantedCookie cookie;  // name, value, domain, path, secure
    SetCookieCheck result;
  } kCases[] = {
      {"", {"n", "v", "", "/", false}, kBad},
      {"a.test/x", {"n", "v", "", "/", false}, kBad},
      {"http://", {"n", "v", "", "/", false}, kBad},
      {"data:,x", {"n", "v", "", "/", false}, kNo},
      {https, {"n", "v", "", "/", false}, kYes},
      {https, {"n", "a=b \"c\", d", "", "", false}, kYes},
      {https, {"", "v", "", "/", false}, kYes},
      {https, {"n", "", "", "/", false}, kYes},
      {https, {"", "", "", "/", false}, kNo},
      {https, {"n=", "v", "", "/", false}, kNo},
      {https, {"n", "v;w", "", "/", false}, kNo},
      {https, {"n;", "v", "", "/", false}, kNo},
      {https, {"n", "v\nw", "", "/", false}, kNo},
      {https, {"n", std::string("v\0w", 3), "", "/", false}, kNo},
      {https, {" n", "v", "", "/", false}, kNo},
      {https, {"n", "v\t", "", "/", false}, kNo},
      {https, {"n", "v", "", "in", false}, kNo},
      {https, {"n", "v", "a.test", "/", false}, kYes},
      {https, {"n", "v", ".VPN.a.test", "/", false}, kYes},
      {https, {"n", "v", "b.test", "/", false}, kNo},
      {https, {"n", "v", "x.vpn.a.test", "/", false}, kNo},
      {https, {"n", "v", "", "/", true}, kYes},
      {"http://a.test/", {"n", "v", "", "/", true}, kNo},
      {https, {"__Secure-n", "v", "", "/", false}, kNo},
      {https, {"__Secure-n", "v", "", "/", true}, kYes},
      {https, {"__Host-n", "v", "", "/", true}, kYes},
      {https, {"__Host-n", "v", "a.test", "/", true}, kNo},
      {https, {"__Host-n", "v", "", "/in", true}, kNo},
  };
  for (const auto& one : kCases) {
    EXPECT_EQ(CheckSetCookie(one.url, one.cookie), one.result)
        << one.url << " " << one.cookie.name << "=" << one.cookie.value << " " << one.cookie.domain;
  }
}

TEST(CookieRulesTest, DeletesWhatTheAddressMeans) {
  StoredCookie host, domain, deep;
  host.name = domain.name = deep.name = "n";
  host.domain = "a.test";
  domain.domain = ".a.test";
  deep.domain = "a.test";
  host.path = domain.path = "/";
  deep.path = "/deep";
  deep.secure = true;
  const struct {
    const char* url;
    const char* name;
    DeleteCookiesScope scope;
    bool host, domain, deep;
  } kCases[] = {
      {"", "n", DeleteCookiesScope::kAll, true, true, true},
      {"a.test", "other", DeleteCookiesScope::kAll, true, true, true},
      {"http://", "n", DeleteCookiesScope::kInvalidUrl, false, false, false},
      {"http://a.test/", "", DeleteCookiesScope::kHost, true, false, true},
      {"http://b.a.test/", "", DeleteCookiesScope::kHost, false, false, false},
      {"http://a.test/", "n", DeleteCookiesScope::kNamed, true, true, false},
      {"http://b.a.test/", "n", DeleteCookiesScope::kNamed, false, true, false},
      {"https://a.test/deep/x", "n", DeleteCookiesScope::kNamed, true, true, true},
      {"https://a.test/deep/x", "m", DeleteCookiesScope::kNamed, false, false, false},
  };
  for (const auto& one : kCases) {
    SCOPED_TRACE(std::string(one.url) + " " + one.name);
    const DeleteCookiesScope scope = CheckDeleteCookies(one.url, one.name);
    EXPECT_EQ(scope, one.scope);
    Url url;
    ParseUrl(one.url, &url);
    EXPECT_EQ(DeletionConcerns(scope, url, one.name, host), one.host);
    EXPECT_EQ(DeletionConcerns(scope, url, one.name, domain), one.domain);
    EXPECT_EQ(DeletionConcerns(scope, url, one.name, deep), one.deep);
  }
}
