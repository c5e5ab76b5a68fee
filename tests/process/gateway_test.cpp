#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <rapidjson/document.h>
#include <signal.h>

#include "testing/gateway/GatewayBox.h"
#include "testing/gateway/Scenarios.h"
#include "testing/support/Subprocess.h"
#include "testing/support/TempDir.h"

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

TEST(Gateway, RefusesBrokenWalksAndListsItsScenarios) {
  const httplib::Params account = {{"user", "ada"}, {"password", "open sesame"}};
  const httplib::Params answer = {{"SAMLResponse", "x"}, {"RelayState", "7"}};
  const std::string cookies = "KXSAMLEMBID=launch; KXSAMLFLOW=7";
  const std::string wrong = "do not belong together";
  const struct {
    const char* host;
    const char* path;
    std::string cookie;
    httplib::Params fields;
    int status;
    std::string text;
  } cases[] = {
      {kGateway, "/saml/ok", "", {}, 403, ""},
      {kIdp, "/sso/ok/sign-in", "", account, 403, ""},
      {kIdp, "/sso/ok/sign-in", "IDPSESSION=1", {{"user", "ada"}}, 200, wrong},
      {kGateway, "/saml/ok/acs", cookies, {{"RelayState", "7"}}, 403, ""},
      {kGateway, "/saml/ok/acs", cookies, {{"SAMLResponse", "x"}, {"RelayState", "8"}}, 403, ""},
      {kGateway, "/saml/ok/acs", "KXSAMLFLOW=7", answer, 403, ""},
      {kGateway, "/saml/ok/acs", cookies, answer, 303, ""},
      {kGateway, "/custom/finished/sign-in", "", {{"user", "ada"}}, 200, wrong},
      {kIdp, "/saml/ok", cookies, {}, 404, ""},
  };
  const GatewayBox box;
  for (const auto& entry : cases) {
    const auto got = Ask(box.port(), entry.host, entry.path, entry.cookie, entry.fields);
    EXPECT_EQ(got.status, entry.status) << entry.path << " " << entry.cookie;
    EXPECT_THAT(got.body, HasSubstr(entry.text)) << entry.path;
  }
  // What is finished by its status alone sets no session cookie yet.
  const auto early = Ask(box.port(), kGateway, "/custom/invalid-first/sign-in", "", account);
  ASSERT_EQ(early.get_header_value_count("Set-Cookie"), 1u);
  EXPECT_THAT(early.get_header_value("Set-Cookie"), HasSubstr("KXEBSTATUS=EB-FINISHED"));
  const std::string index = Ask(box.port(), kGateway, "/", "").body;
  for (const Scenario& scenario : Scenarios()) {
    EXPECT_LT(Ask(box.port(), kGateway, scenario.path, "KXSAMLEMBID=launch").status, 400);
    EXPECT_THAT(index, HasSubstr("\"" + box.http_origin() + scenario.path + "\""));
  }
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
