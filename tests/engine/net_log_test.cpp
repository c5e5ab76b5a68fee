// Whether the tables of numbers are those that Chromium has.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "cef/chromium/base/NetErrors.h"
#include "cef/chromium/process/ChildProcess.h"
#include "tests/support/RawChromium.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"

using std::chrono::seconds;

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
