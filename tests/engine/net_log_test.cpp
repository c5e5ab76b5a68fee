// What the verifier of a real Chromium says about a real certificate, and whether the tables of
// numbers are those that Chromium has.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "cef/chromium/base/NetErrors.h"
#include "cef/chromium/process/ChildProcess.h"
#include "cef/chromium/process/NetLog.h"
#include "tests/support/RawChromium.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"
#include "tools/gateway/Certificates.h"

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

// openssl's own server with the certificate given, on a free port of loopback.
class TlsServer {
 public:
  explicit TlsServer(const Identity& identity) {
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    engine::ChildOptions options;
    options.command = {"/bin/sh", "-c",
                       "exec openssl s_server -www -accept 127.0.0.1:0 -cert " +
                           folder_.write("certificate.pem", identity.CertificatePem()) + " -key " +
                           folder_.write("key.pem", identity.KeyPem())};
    options.descriptors = {{ends[1], STDOUT_FILENO}};
    std::string err;
    process_ = engine::StartChild(options, &err);
    EXPECT_GT(process_, 0) << err;
    close(ends[1]);
    output_ = ends[0];
    std::string text;
    char c;
    while (text.find("ACCEPT 127.0.0.1:") == std::string::npos || text.back() != '\n') {
      if (!engine::WaitReadable(output_, seconds(10)) || read(output_, &c, 1) != 1) break;
      text += c;
    }
    port_ = text.substr(text.rfind(':') + 1);
    port_.pop_back();
  }
  ~TlsServer() {
    kill(process_, SIGKILL);
    engine::ReapChild(process_);
    close(output_);
  }
  const std::string& port() const { return port_; }

 private:
  TempDir folder_;
  pid_t process_ = -1;
  int output_ = -1;
  std::string port_;
};

}  // namespace

TEST(NetLogTest, HasEveryFaultOfACertificate) {
  TlsServer server(TestAuthority().Issue(CertificateKind::kWrongHostUnknownAuthority, {"a.test"}));
  VirtualDisplay display;
  TempDir folder;
  std::string err, fifo;
  {
    auto log = engine::NetLog::Start(folder.path(), &err);
    ASSERT_TRUE(log) << err;
    fifo = log->path();
    engine::ChromiumOptions options;
    options.profile_dir = folder.file("profile");
    options.switches = {{"log-net-log", fifo}, {"host-resolver-rules", "MAP *.test 127.0.0.1"}};
    RawChromium chromium(options);
    chromium.Call("Security.enable");
    chromium.Call("Security.setOverrideCertificateErrors", "{\"override\":true}");
    EXPECT_FALSE(log->Fault("VPN.Corp.test", 4, milliseconds(0)));
    chromium.OpenPage("https://VPN.Corp.test:" + server.port() + "/");
    chromium.WaitFor("Security.certificateError");
    const auto fault = log->Fault("VPN.Corp.test", 4, seconds(2));
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->status, 1u | 4u);
    EXPECT_EQ(fault->certificate.rfind("-----BEGIN CERTIFICATE-----", 0), 0u);
    // Addresses must not get to the disk.
    struct stat info;
    EXPECT_EQ(lstat(fifo.c_str(), &info), 0);
    EXPECT_TRUE(S_ISFIFO(info.st_mode));
  }
  EXPECT_NE(access(fifo.c_str(), F_OK), 0);
}

TEST(NetLogTest, OurNumbersAreChromiums) {
  VirtualDisplay display;
  TempDir folder;
  const std::string fifo = folder.file("log");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const int log = open(fifo.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  engine::ChromiumOptions options;
  options.profile_dir = folder.file("profile");
  options.switches = {{"log-net-log", fifo}};
  RawChromium chromium(options);
  std::string line;
  char piece[4096];
  while (line.find('\n') == std::string::npos && engine::WaitReadable(log, seconds(10))) {
    line.append(piece, static_cast<size_t>(std::max<ssize_t>(read(log, piece, sizeof piece), 0)));
  }
  close(log);
  line.erase(line.find('\n'));
  rapidjson::Document constants;
  constants.Parse((line.substr(0, line.rfind(',')) + "}").c_str());
  ASSERT_FALSE(constants.HasParseError());
  const auto& flags = constants["constants"]["certStatusFlag"];
  int known = 0;
  for (const auto& error : constants["constants"]["netError"].GetObject()) {
    const std::string name = error.name.GetString();
    const int code = error.value.GetInt();
    if (code >= 0) continue;
    if (engine::NetErrorCode(name) != -2) {
      ++known;
      EXPECT_EQ(engine::NetErrorCode("net::" + name), code) << name;
    }
    // Every certificate error has a bit of which Chromium knows the name, too.
    if (name.rfind("ERR_CERT_", 0) == 0 && flags.HasMember(name.c_str() + 9) && code != -219) {
      EXPECT_EQ(engine::CertStatusBit(code), flags[name.c_str() + 9].GetUint()) << name;
    }
  }
  EXPECT_GT(known, 200);
}
