// What a real Chromium writes to its network log, and whom it asks.

#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <unistd.h>

#include <regex>

#include "cef/chromium/base/NetErrors.h"
#include "cef/chromium/process/ChromiumProcess.h"
#include "cef/chromium/process/Profile.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"

using std::chrono::seconds;

namespace {

class NetLogTest : public testing::Test {
 protected:
  // Starts a Chromium that writes the log, with an empty page.
  void SetUp() override {
    std::string err;
    profile_ = engine::Profile::Open(folder_.file("profile"), &err);
    engine::ChromiumOptions options;
    options.chromium = engine::FindChromiums(&err).at(0);
    options.profile_dir = profile_->dir();
    options.switches = {{"log-net-log", log_}};
    if (geteuid() == 0) options.switches.emplace_back("no-sandbox", "");
    chromium_ = engine::ChromiumProcess::Start(options, &err);
    ASSERT_TRUE(chromium_) << err;
    const std::string command = R"({"id":1,"method":"Target.createTarget","params":)"
                                R"({"newWindow":true,"url":"data:,x"}})";
    const auto size = static_cast<ssize_t>(command.size() + 1);
    ASSERT_EQ(write(chromium_->command_fd(), command.c_str(), command.size() + 1), size);
  }

  // The log's text once it holds all of these.
  std::string LogWith(const std::vector<std::string>& texts) const {
    std::string log;
    const auto end = std::chrono::steady_clock::now() + seconds(20);
    for (bool whole = false; !whole && std::chrono::steady_clock::now() < end; usleep(100000)) {
      log = ReadFile(log_);
      whole = true;
      for (const auto& text : texts) whole = whole && log.find(text) != std::string::npos;
    }
    return log;
  }

  VirtualDisplay display_;
  const TempDir folder_;
  const std::string log_ = folder_.file("log");
  std::unique_ptr<engine::Profile> profile_;
  std::unique_ptr<engine::ChromiumProcess> chromium_;
};

TEST_F(NetLogTest, OurNumbersAreChromiums) {
  std::string line = LogWith({"\n"});
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

// The component updater and the list of accounts, which nothing switches off, get no further than
// the port.
TEST_F(NetLogTest, NobodyIsAskedUnasked) {
  const std::string text = LogWith({"ListAccounts", "cup2key"});
  const std::regex address("\"(?:url\":\"https?://|host\":\"(?:https?://)?)([^:/\"]+)");
  for (std::sregex_iterator it(text.begin(), text.end(), address), last; it != last; ++it) {
    EXPECT_EQ((*it)[1], "192.0.2.1");
  }
}

}  // namespace
