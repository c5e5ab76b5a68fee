#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <rapidjson/document.h>
#include <signal.h>

#include <map>

#include "testing/gateway/GatewayBox.h"
#include "testing/gateway/Scenarios.h"
#include "testing/support/Subprocess.h"
#include "testing/support/TempDir.h"

namespace {

using std::chrono::seconds;
using testing::HasSubstr;
using testing::Not;

// A browser's essentials over plain HTTP: cookies by host, one request at a time.
class Walker {
 public:
  explicit Walker(int port) : port_(port) {}

  void Plant(const std::string& host, const std::string& name, const std::string& value) {
    cookies_[host][name] = value;
  }

  httplib::Response Get(const std::string& host, const std::string& path) {
    return Keep(host, Client().Get(path, Headers(host)));
  }

  httplib::Response Post(const std::string& host, const std::string& path,
                         const httplib::Params& fields) {
    return Keep(host, Client().Post(path, Headers(host), fields));
  }

  // Follows redirects; returns the last answer, and its address in `last`.
  httplib::Response Follow(const httplib::Response& first) {
    httplib::Response response = first;
    for (int hop = 0; response.has_header("Location") && hop < 10; ++hop) {
      last = response.get_header_value("Location");
      const size_t path = last.find('/', 8);
      response = Get(last.substr(7, last.find(':', 7) - 7), last.substr(path));
    }
    return response;
  }

  std::string Sent(const std::string& host) const { return Headers(host).find("Cookie")->second; }

  std::string last;

 private:
  httplib::Client Client() const { return httplib::Client("127.0.0.1", port_); }

  httplib::Headers Headers(const std::string& host) const {
    std::string text;
    const auto found = cookies_.find(host);
    if (found != cookies_.end()) {
      for (const auto& [name, value] : found->second) {
        text += (text.empty() ? "" : "; ") + name + "=" + value;
      }
    }
    return {{"Host", host + ":" + std::to_string(port_)}, {"Cookie", text}};
  }

  httplib::Response Keep(const std::string& host, const httplib::Result& result) {
    if (!result) throw std::runtime_error("no answer: " + httplib::to_string(result.error()));
    for (const auto& [key, value] : result->headers) {
      if (key != "Set-Cookie") continue;
      const size_t equals = value.find('=');
      cookies_[host][value.substr(0, equals)] =
          value.substr(equals + 1, value.find(';') - equals - 1);
    }
    return *result;
  }

  const int port_;
  std::map<std::string, std::map<std::string, std::string>> cookies_;
};

constexpr char kGateway[] = "gateway.localhost";
constexpr char kIdp[] = "idp.localhost";
const httplib::Params kAccount = {{"user", "ada"}, {"password", "open sesame"}};

// The value of the hidden field of that name in a page.
std::string Hidden(const std::string& page, const std::string& name) {
  const std::string begin = "name=\"" + name + "\" value=\"";
  const size_t found = page.find(begin);
  if (found == std::string::npos) return "";
  return page.substr(found + begin.size(),
                     page.find('"', found + begin.size()) - found - begin.size());
}

TEST(Gateway, SamlSignInWalk) {
  const struct {
    const char* scenario;
    const char* status;
  } cases[] = {{"ok", "1"}, {"slow", "1"}, {"refused", "0"}};
  const GatewayBox box;
  for (const auto& entry : cases) {
    const std::string path = std::string("/saml/") + entry.scenario;
    Walker walker(box.port());
    EXPECT_EQ(walker.Get(kGateway, path).status, 403) << "the launch cookie is missing";
    walker.Plant(kGateway, "KXSAMLEMBID", "launch");
    const std::string form = walker.Follow(walker.Get(kGateway, path + "?auto=1")).body;
    EXPECT_THAT(walker.last, HasSubstr("SAMLRequest="));
    EXPECT_THAT(form, HasSubstr("f.submit()"));
    const std::string relay = Hidden(form, "RelayState");
    const std::string sign_in = std::string("/sso/") + entry.scenario + "/sign-in";

    const auto wrong = walker.Post(
        kIdp, sign_in, {{"user", "ada"}, {"password", "sesame"}, {"RelayState", relay}});
    EXPECT_THAT(wrong.body, HasSubstr("do not belong together"));
    httplib::Params account = kAccount;
    account.emplace("RelayState", relay);
    const auto right = walker.Post(kIdp, sign_in, account);
    EXPECT_THAT(right.body, HasSubstr(path + "/acs"));
    const std::string response = Hidden(right.body, "SAMLResponse");
    EXPECT_THAT(walker.Sent(kIdp), HasSubstr("IDPSESSION="));

    EXPECT_EQ(walker.Post(kGateway, path + "/acs", {{"SAMLResponse", response}}).status, 403);
    const auto done =
        walker.Post(kGateway, path + "/acs", {{"SAMLResponse", response}, {"RelayState", relay}});
    EXPECT_EQ(done.status, 303);
    EXPECT_THAT(walker.Sent(kGateway), HasSubstr("KXSAMLEBSTATEID="));
    EXPECT_THAT(walker.Sent(kGateway), HasSubstr(std::string("KXSAMLEBSTATUS=") + entry.status));
    EXPECT_EQ(walker.Follow(done).status, 200);
  }
}

TEST(Gateway, CustomSignInWalk) {
  const struct {
    const char* scenario;
    const char* status;
    bool session_at_once;
  } cases[] = {{"finished", "EB-FINISHED", true},
               {"hc-needed", "EB-HC-NEEDED", false},
               {"hc-failed", "EB-HC-FAILED", false},
               {"invalid-first", "EB-FINISHED", false}};
  const GatewayBox box;
  for (const auto& entry : cases) {
    const std::string path = std::string("/custom/") + entry.scenario;
    Walker walker(box.port());
    walker.Plant(kGateway, "KXEBID", "launch");
    walker.Plant(kGateway, "KXEBSTATUS", "EB-LAUNCH");
    walker.Get(kGateway, path);
    walker.Follow(walker.Post(kGateway, path + "/sign-in", kAccount));
    EXPECT_THAT(walker.Sent(kGateway), HasSubstr(std::string("KXEBSTATUS=") + entry.status));
    EXPECT_EQ(walker.Sent(kGateway).find("KXID=") != std::string::npos, entry.session_at_once);
    EXPECT_THAT(walker.Sent(kGateway), HasSubstr("KXEBID=launch"));
    if (std::string(entry.scenario) == "invalid-first") {
      walker.Follow(walker.Get(kGateway, path + "/session"));
      EXPECT_THAT(walker.Sent(kGateway), HasSubstr("KXID="));
    }
  }
}

TEST(Gateway, EveryScenarioOfTheTableAnswers) {
  const GatewayBox box;
  Walker walker(box.port());
  walker.Plant(kGateway, "KXSAMLEMBID", "launch");
  const std::string index = walker.Get(kGateway, "/").body;
  for (const Scenario& scenario : Scenarios()) {
    EXPECT_EQ(walker.Follow(walker.Get(kGateway, scenario.path)).status, 200) << scenario.path;
    EXPECT_THAT(index, HasSubstr(std::string("\"") + box.http_origin() + scenario.path + "\""));
  }
  EXPECT_EQ(walker.Get(kGateway, "/saml/none").status, 404);
  EXPECT_EQ(walker.Get(kIdp, "/saml/ok").status, 404) << "only the gateway has it";
}

TEST(Gateway, ProgramServesBothSchemesAndNeverOutlivesItsStarter) {
  const TempDir folder;
  const auto start = [&folder](std::vector<std::string> more) {
    Subprocess::Command command;
    command.arguments = {EB_GATEWAY, "--authority-file", folder.file("authority.pem")};
    command.arguments.insert(command.arguments.end(), more.begin(), more.end());
    command.keep_input = true;
    return command;
  };
  Subprocess gateway(
      start({"--exit-with-stdin", "--certificate", "expired", "--certificate-for", "idp"}));
  ASSERT_TRUE(gateway.WaitForOutput("\n", seconds(20)));
  rapidjson::Document ready;
  ASSERT_FALSE(ready.Parse(gateway.out().c_str()).HasParseError());

  const auto fetch = [&](const std::string& host) {
    httplib::SSLClient client(host, ready["https_port"].GetInt());
    client.set_hostname_addr_map({{host, "127.0.0.1"}});
    client.set_ca_cert_path(folder.file("authority.pem").c_str());
    client.enable_server_certificate_verification(true);
    return client.Get("/").error();
  };
  EXPECT_EQ(fetch("gateway.localhost"), httplib::Error::Success);
  EXPECT_EQ(fetch("idp.localhost"), httplib::Error::SSLServerVerification);

  httplib::Client client("127.0.0.1", ready["port"].GetInt());
  rapidjson::Document requests;
  ASSERT_FALSE(requests.Parse(client.Get("/-/requests")->body.c_str()).HasParseError());
  ASSERT_EQ(requests.Size(), 1u);
  EXPECT_STREQ(requests[0]["scheme"].GetString(), "https");

  gateway.CloseInput();
  const auto end = gateway.Wait(seconds(20));
  ASSERT_TRUE(end);
  EXPECT_EQ(end->exit_status, 0) << end->err;

  Subprocess other(start({"--port", "0"}));
  ASSERT_TRUE(other.WaitForOutput("\n", seconds(20)));
  other.Signal(SIGTERM);
  ASSERT_TRUE(other.Wait(seconds(20)));
  EXPECT_EQ(RunToEnd(start({"--certificate", "fine"}), seconds(20)).exit_status, 2);
}

}  // namespace
