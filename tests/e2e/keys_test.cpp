// What users have besides a password: passkeys, security keys, certificates of their own. The
// dialogs for them are Chromium's; here they have to work in the program's bare window.

#include <httplib.h>
#include <signal.h>

#include <regex>
#include <thread>

#include "tests/e2e/E2eTest.h"
#include "tests/support/TrustStore.h"
#include "tools/gateway/Certificates.h"

namespace {

using std::chrono::seconds;

constexpr char kCookie[] = "KXSAMLEMBID=launch";

// A WebSocket message of 256 characters, masked with nothing.
std::string Frame(std::string text) {
  text.resize(256, ' ');
  return std::string("\x81\xfe\x01\0\0\0\0\0", 8) + text;
}

// Plugs a security key of software into the page at the address, for as long as the process that is
// returned lives. Null when the developer port of the interface is another run's, or nobody's.
std::unique_ptr<Subprocess> PlugKeyInto(const std::string& address, const std::string& interface) {
  const auto list = httplib::Client(interface, 8088).Get("/json/list", {{"Host", "localhost"}});
  const std::regex page("\"url\": \"" + address +
                        "[^\"]*\",\\s*\"webSocketDebuggerUrl\": \"ws://[^/]*([^\"]*)\"");
  std::smatch found;
  if (!list || !std::regex_search(list->body, found, page)) return nullptr;
  Subprocess::Command talk;
  talk.arguments = {"bash", "-c",
                    "exec 3<>/dev/tcp/$0/8088; printf \"GET $1 HTTP/1.1\\r\\n"
                    "Host: localhost\\r\\nConnection: Upgrade\\r\\nUpgrade: websocket\\r\\n"
                    "Sec-WebSocket-Version: 13\\r\\n"
                    "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\\r\\n\\r\\n\" >&3;"
                    "read -r _ <&3; cat <&3 & cat >&3; kill $!",
                    interface, found[1]};
  talk.input = Frame(R"({"id":1,"method":"WebAuthn.enable","params":{"enableUI":true}})") +
               Frame(R"({"id":2,"method":"WebAuthn.addVirtualAuthenticator","params":{"options":)"
                     R"({"protocol":"ctap2","transport":"usb","hasResidentKey":true,)"
                     R"("hasUserVerification":true,"isUserVerified":true}}})");
  talk.keep_input = true;
  auto key = std::make_unique<Subprocess>(talk);
  EXPECT_TRUE(key->WaitForOutput("authenticatorId", kPatience)) << key->out() << key->err();
  return key;
}

class KeysTest : public E2eTest {
 protected:
  // Windows take keys only a moment after they show, so it is pressed again and again.
  void PressReturnUntil(const std::function<bool()>& done) {
    EXPECT_TRUE(WaitFor([&] {
      display_->Xdotool({"key", "Return"});
      return WaitFor(done, seconds(4));
    }));
  }
};

// Registers a passkey, and signs in with it when the user has taken it from Chromium's list.
TEST_F(KeysTest, PasskeySignsIn) {
  std::unique_ptr<Subprocess> starter;
  std::unique_ptr<Subprocess> key;
  // The port belongs to whichever run on the machine came first, here and there.
  ASSERT_TRUE(WaitFor([&] {
    if (starter) starter->Signal(SIGTERM), starter->Wait(kPatience);
    starter = std::make_unique<Subprocess>(
        StarterCommand({"saml-login", "/saml-passkey/start", kCookie, false, {}}));
    display_->WaitForWindow("Sign in with a passkey", kPatience);
    const std::string page = "http://idp.localhost:" + std::to_string(box_->port());
    return (key = PlugKeyInto(page, "127.0.0.1")) || (key = PlugKeyInto(page, "::1"));
  })) << "another run keeps the developer port";
  const auto unasked = [&] {
    return display_->Xdotool({"search", "--onlyvisible", "--name", "Sign in with a passkey"})
               .status != 0;
  };
  PressReturnUntil(unasked);
  // In between Chromium may offer to cancel, which the key would do.
  EXPECT_NE(display_->WaitForWindow("Choose your key", kPatience), "");
  PressReturnUntil([&] { return starter->Wait(seconds(0)).has_value(); });
  const StarterReport report = Report(*starter);
  EXPECT_EQ(report.verdict, "signed in") << report.log << report.err;
  EXPECT_FALSE(CookiesSentTo("/saml-passkey/known").empty()) << "signed in without the passkey";
}

// A gateway that serves nobody who shows no certificate. The one in the user's store is offered.
TEST_F(KeysTest, ClientCertificateIsChosen) {
  const TestAuthority authority;
  const std::string ca = home_.write("ca", authority.certificate_pem());
  TrustAuthority(home_.path(), authority.certificate_pem());
  const Identity user = authority.Issue(CertificateKind::kGood, {"ada"});
  const std::string both = home_.write("user", user.KeyPem() + user.CertificatePem());
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"openssl", "pkcs12", "-export", "-in", both, "-out", both + ".p12", "-passout",
            "pass:1"},
           {"pk12util", "-i", both + ".p12", "-d", "sql:" + home_.file(".pki/nssdb"), "-W", "1"}}) {
    const auto result = display_->Run(command);
    ASSERT_EQ(result.status, 0) << result.output;
  }
  const Identity gateway = authority.Issue(CertificateKind::kGood, {"localhost"});
  httplib::SSLServer server(home_.write("certificate", gateway.CertificatePem()).c_str(),
                            home_.write("key", gateway.KeyPem()).c_str(), ca.c_str());
  server.set_keep_alive_timeout(1);
  server.Get("/start", [](const httplib::Request&, httplib::Response& answer) {
    answer.headers = {{"Set-Cookie", "KXSAMLEBSTATEID=known"}, {"Set-Cookie", "KXSAMLEBSTATUS=1"}};
    answer.set_content("<script>location = '/done'</script>", "text/html");
  });
  const std::string address =
      "https://localhost:" + std::to_string(server.bind_to_any_port("127.0.0.1")) + "/start";
  std::thread serving([&] { server.listen_after_bind(); });
  Subprocess starter(StarterCommand({"saml-login", "", kCookie, false, {"--url", address}}));
  PressReturnUntil([&] { return starter.Wait(seconds(0)).has_value(); });
  const StarterReport report = Report(starter);
  EXPECT_EQ(report.post_auth_cookie, "KXSAMLEBSTATEID=known") << report.log << report.err;
  server.stop();
  serving.join();
}

}  // namespace
