// What is done with a launch request and with the cookies and addresses that a browser sends.

#include <rapidjson/document.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "GUI/newUI/CEFJsonUtils.h"
#include "GUI/newUI/CommonWebBrowser.h"
#include "bench/functions/Pairs.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace {

const std::string kGateway = "https://gateway.example.com/vora-na/auth/url_default/welcome.cgi";

std::string LaunchRequest() {
  return R"({"browsertype": 1, "url": ")" + kGateway +
         R"(", "cookie": "DSSIGNIN=url_default;;)"
         R"(DSASSERTREF=x_2f9c1a7e5d3b48c6;;DSPREAUTH=68c1d7e0f5b24a3992e6d1c7b80f3a5e", )"
         R"("samlslourltoclearcookies": "https://idp.example.org/adfs/ls/?wa=wsignout1.0"})";
}

// A Cookie header of `count` cookies.
std::string CookieList(int count) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    if (i > 0) list += "; ";
    list += "cookie" + std::to_string(i) + "=68c1d7e0f5b24a3992e6d1c7b80f3a5e";
  }
  return list;
}

std::string Bundle(int count) {
  std::string bundle = CookieList(count);
  for (size_t at = 0; (at = bundle.find("; ", at)) != std::string::npos; at += 2) {
    bundle.replace(at, 2, ";;");
  }
  return bundle;
}

// The pieces between separators of two bytes, and nothing else.
std::vector<std::string> Split(const std::string& text, std::string_view separator) {
  std::vector<std::string> pieces;
  for (size_t start = 0, end = 0; end != std::string::npos; start = end + separator.size()) {
    end = text.find(separator, start);
    pieces.push_back(text.substr(start, end - start));
  }
  return pieces;
}

size_t ListedCookies(const std::string& list) {
  std::vector<std::string> items;
  GetCookieListforKey(list, "cookie", items);
  return items.size();
}

size_t BundledCookies(const std::string& bundle) {
  std::set<std::string> pieces;
  ParseCookies(bundle, pieces);
  return pieces.size();
}

// A logout helper that is asked again and again about the same address, one that changes nothing.
const std::wstring kElsewhere =
    L"https://idp.example.org/adfs/ls/idpinitiatedsignon.aspx?client-request-id=12c0a9d4-7f";

}  // namespace

void AddRequests() {
  AddPair({"launch request parsed", "RapidJSON alone", 0, Repeat([request = LaunchRequest()] {
             EmbBrowserInfo info;
             if (!JsonUtils::parseRequestForEmbBrowserInfo(request, info)) abort();
             return info.browserType;
           }),
           Repeat([request = LaunchRequest()] {
             rapidjson::Document document;
             document.Parse<rapidjson::kParseIterativeFlag>(request.c_str());
             return document.MemberCount();
           }),
           2.0});
  AddPair({"list of 10 cookies split", "pieces between separators alone", 0,
           Repeat([list = CookieList(10)] { return ListedCookies(list); }),
           Repeat([list = CookieList(10)] { return Split(list, "; ").size(); }), 2.0});
  // Each cookie, and the whole, is a log record below the level.
  AddPair({"bundle of 3 cookies split", "its 4 calls of the log alone", 0,
           Repeat([bundle = Bundle(3)] { return BundledCookies(bundle); }), Repeat([] {
             for (int i = 0; i < 4; ++i) KXLOG(4, "OrbUI", "Retrieved cookie of length: %d", 40);
             return 0;
           })});
  AddPair({"logout state advanced", "its log record alone", 0, Repeat([] {
             static CSLOIdpLogoutHelper helper;
             if (helper.m_hostname.empty()) helper.SetHostname(std::string("gateway.example.com"));
             helper.UpdateState(kElsewhere);
             return helper.m_state;
           }),
           Repeat([] {
             KXLOG(3, "OrbUI", "SAML SLO URL: %ls State:%d", kElsewhere.c_str(), 0);
             return 0;
           })});

  AddCurve({"list of cookies split", "cookies", {1, 3, 10, 30, 100, 300, 1000}, [](int x) {
              return Repeat([list = CookieList(x)] { return ListedCookies(list); });
            }});
  AddCurve({"bundle of cookies split", "cookies", {1, 3, 10, 30, 100, 300, 1000}, [](int x) {
              return Repeat([bundle = Bundle(x)] { return BundledCookies(bundle); });
            }});
}
