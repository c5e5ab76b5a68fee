#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <rapidjson/document.h>
#include <signal.h>

#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"
#include "tools/gateway/GatewayBox.h"

namespace {

using std::chrono::seconds;
using testing::HasSubstr;

constexpr char kGateway[] = "gateway.localhost";
constexpr char kIdp[] = "idp.localhost";

// One request to a host of the box: GET, or POST when there are fields.
httplib::Response Ask(int port, const std::string& host, const std::string& path,
                      const std::string& cookie, const httplib::Params& fields = {}) {
  const httplib::Headers headers = {{"Host", host + ":" + std::to_string(port)},
                                    {"Cookie", cookie}};
  httplib::Client client("127.0.0.1", port);
  const httplib::Result result =
      fields.empty() ? client.Get(path, headers) : client.Post(path, headers, fields);
  if (!result) throw std::runtime_error("no answer: " + httplib::to_string(result.error()));
  return *result;
}

// A walk that has lost a cookie or a field on its way must not come through.
TEST(Gateway, RefusesBrokenWalksAndSaysWhy) {
  const httplib::Params account = {{"user", "ada"}, {"password", "open sesame"}};
  const httplib::Params answer = {{"SAMLResponse", "x"}, {"RelayState", "7"}};
  const std::string cookies = "KXSAMLEMBID=launch; KXSAMLFLOW=7";
  const std::string idp = "IDPSESSION=1; IDPLANG=en; IDPDEVICE=box";
  const std::string acs = "/saml-redirect/acs", sign_in = "/saml-redirect/sign-in";
  const struct {
    const char* host;
    std::string path;
    std::string cookie;
    httplib::Params fields;
    int status;
    std::string text;
  } cases[] = {
      {kGateway, "/saml-redirect/start", "", {}, 403, "the cookie KXSAMLEMBID is missing"},
      {kIdp, sign_in, "", account, 403, "the cookie IDPSESSION is missing"},
      {kIdp, sign_in, idp, {{"user", "ada"}}, 200, "do not belong together"},
      {kIdp, sign_in + "?auto=1", idp, account, 200, "/saml-redirect/acs?auto=1\""},
      {kGateway, acs, cookies, {{"RelayState", "7"}}, 403, "the field SAMLResponse is missing"},
      {kGateway, acs, cookies, {{"SAMLResponse", "x"}, {"RelayState", "8"}}, 403, "another value"},
      {kGateway, acs, "KXSAMLFLOW=7", answer, 403, "the cookie KXSAMLEMBID is missing"},
      {kGateway, acs, cookies, answer, 303, ""},
      {kIdp, "/saml-redirect/start", cookies, {}, 404, "No such page"},
  };
  const GatewayBox box;
  for (const auto& entry : cases) {
    const auto got = Ask(box.port(), entry.host, entry.path, entry.cookie, entry.fields);
    EXPECT_EQ(got.status, entry.status) << entry.path << " " << entry.cookie;
    EXPECT_THAT(got.body, HasSubstr(entry.text)) << entry.path;
  }
  EXPECT_THAT(box.refusals().at(0), HasSubstr("gateway/start: the cookie KXSAMLEMBID is missing"));
  EXPECT_THAT(Ask(box.port(), kGateway, "/", "").body,
              HasSubstr("\"" + box.https_origin() + "/saml-iframe/start?auto=1\""));
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
  EXPECT_EQ(fetch("expired.third.localhost"), httplib::Error::SSLServerVerification);

  httplib::Client client("127.0.0.1", ready["port"].GetInt());
  rapidjson::Document requests;
  ASSERT_FALSE(requests.Parse(client.Get("/-/requests")->body.c_str()).HasParseError());
  ASSERT_EQ(requests.Size(), 1u);
  EXPECT_STREQ(requests[0]["scheme"].GetString(), "https");

  gateway.CloseInput();
  const auto end = gateway.Wait(seconds(20));
  ASSERT_TRUE(end);
  EXPECT_EQ(end->exit_status, 0) << end->err;

  Subprocess other(start({"--port", "0", "--scenario", "custom-finished"}));
  EXPECT_TRUE(other.WaitForOutput("\n", seconds(20)));
  EXPECT_THAT(other.err(), HasSubstr("embedded-browser-start --type custom --url 'http://"));
  other.Signal(SIGTERM);
  ASSERT_TRUE(other.Wait(seconds(20)));
  for (const auto& wrong : {"--certificate", "--scenario", "--scenarios"}) {
    const auto refused = RunToEnd(start({wrong, "fine"}), seconds(20));
    EXPECT_EQ(refused.exit_status, 2) << refused.err;
  }
}

}  // namespace
