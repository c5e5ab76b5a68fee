// Chromium's command line, its error numbers, and its network log, as texts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "cef/chromium/base/NetErrors.h"
#include "cef/chromium/browser/TitleText.h"
#include "cef/chromium/process/ChromiumSwitches.h"
#include "cef/chromium/process/NetLog.h"
#include "tests/support/TempDir.h"

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

TEST(ChromiumSwitchesTest, EachSwitchOnceAndListsJoined) {
  const auto arguments = engine::ChromiumArguments("/p q",
                                                   {{"disable-features", "Mine,Translate"},
                                                    {"enable-features", "One"},
                                                    {"enable-features", "Two,One"},
                                                    {"window-size", "5,5"},
                                                    {"user-agent", "first"},
                                                    {"user-agent", "a=b"},
                                                    {"user-data-dir", "/elsewhere"}},
                                                   true);
  std::vector<std::string> names, features;
  for (const std::string& argument : arguments) {
    names.push_back(argument.substr(0, argument.find('=')));
    if (names.back() == "--disable-features") features.push_back(argument);
  }
  auto unique = names;
  std::sort(unique.begin(), unique.end());
  EXPECT_EQ(std::unique(unique.begin(), unique.end()), unique.end());
  ASSERT_EQ(features.size(), 1u);
  EXPECT_THAT(features[0], StartsWith("--disable-features=Translate,"));
  EXPECT_THAT(features[0], testing::EndsWith(",Mine"));
  for (const char* expected : {"--enable-features=One,Two", "--window-size=5,5", "--user-agent=a=b",
                               "--user-data-dir=/p q", "--remote-debugging-pipe",
                               "--no-startup-window", "--disable-dev-shm-usage"}) {
    EXPECT_THAT(arguments, Contains(expected));
  }
  // The sandbox is the settings' business.
  EXPECT_THAT(engine::ChromiumArguments("/p", {}, false),
              Not(Contains(testing::AnyOf("--no-sandbox", "--disable-dev-shm-usage"))));
  EXPECT_TRUE(engine::SharedMemoryIsSmall("/proc"));
  EXPECT_TRUE(engine::SharedMemoryIsSmall("/missing"));
}

TEST(TitleTextTest, BeginsWithTheHostWhateverThePageSays) {
  const std::string hundred(100, 'x');
  for (const auto& [page, title] : std::vector<std::pair<std::string, std::string>>{
           {"", "h.test"},
           {"h.test/path", "h.test"},
           {"h.test.evil/path", "h.test \u2013 h.test.evil/path"},
           {" Sign\t\n in\u3000\u2028now ", "h.test \u2013 Sign in now"},
           {"\u202Emoc\u2066.\u200Fknab\u061C\u200B\uFEFF\x07", "h.test \u2013 moc.knab"},
           {"\U000E0041\xFF\xC0\xAF\xE2\x80", "h.test"},
           {"\u05E9\u05DC \U0001F512", "h.test \u2013 \u05E9\u05DC \U0001F512"},
           {hundred, "h.test \u2013 " + hundred},
           {hundred + "y", "h.test \u2013 " + hundred + "\u2026"}}) {
    EXPECT_EQ(engine::TitleText("h.test", page), title);
  }
  EXPECT_EQ(engine::TitleText("127.0.0.1", "\u05E9"), "\u200E127.0.0.1 \u2013 \u05E9");
}

TEST(TitleTextTest, HostIsWhatTheAddressLeadsTo) {
  for (const auto& [url, host] : std::vector<std::pair<std::string, std::string>>{
           {"https://h.test/a@b:1", "h.test"},
           {"https://bank.test:pw@h.test:8443?x", "h.test:8443"},
           {"http://[::1]:80/", "[::1]:80"},
           {"http://[::1]/", "[::1]"},
           {"https://xn--bcher-kva.test/", "xn--bcher-kva.test"},
           {"data:text/html,http://h.test", ""},
           {"file:///etc", ""},
           {"", ""}}) {
    EXPECT_EQ(engine::HostToShow(url), host) << url;
  }
}

// Whether the numbers are right, a real Chromium is asked elsewhere.
TEST(NetErrorsTest, UnknownOnesAreFailures) {
  for (const char* name : {"net::ERR_NOBODY_KNOWS", "", "net::net::ERR_ABORTED", "net::"}) {
    EXPECT_EQ(engine::NetErrorCode(name), -2) << name;
  }
  EXPECT_EQ(engine::CertStatusBit(-219), engine::CertStatusBit(-202));
  EXPECT_EQ(engine::CertStatusBit(-105), 0u);
}

namespace {

using Results = std::vector<std::pair<std::string, uint32_t>>;

Results Parse(const std::string& log, size_t piece) {
  engine::NetLogParser parser;
  Results results;
  for (size_t at = 0; at < log.size(); at += piece) {
    parser.Feed(log.data() + at, std::min(piece, log.size() - at),
                [&](const engine::CertVerdict& verdict) {
                  results.emplace_back(verdict.host, verdict.status);
                });
  }
  return results;
}

std::string Event(int type, int id, const std::string& params) {
  return "{\"params\":" + params + ",\"phase\":1,\"source\":{\"id\":" + std::to_string(id) +
         ",\"type\":26},\"time\":\"1\",\"type\":" + std::to_string(type) + "},\n";
}

const char kHead[] =
    "{\"constants\":{\"logEventTypes\":{\"CERT_VERIFIER_JOB\":77,\"OTHER\":770}},\n\"events\": [\n";

}  // namespace

TEST(NetLogParserTest, ReportsFinishedVerifications) {
  const std::string log =
      kHead + Event(77, 1, R"({"host":"a.test"})") + Event(77, 2, R"({"host":"b.test"})") +
      Event(770, 1, R"({"cert_status":9})") + Event(77, 3, R"({"cert_status":9})") +
      Event(77, 2, R"({"cert_status":5})") + Event(77, 2, R"({"cert_status":9})") +
      "{\"type\":77,broken\n" + "{\"type\":77},\n" + Event(77, -4, R"({"host":"x.test"})") +
      Event(77, -4, R"({"cert_status":268435456})") + Event(77, 1, R"({"cert_status":0})") + "]}\n";
  for (size_t piece : {log.size(), size_t{1}, size_t{7}}) {
    EXPECT_THAT(Parse(log, piece),
                ElementsAre(Pair("b.test", 5), Pair("x.test", (1u << 28) | 4), Pair("a.test", 0)));
  }
}

TEST(NetLogParserTest, SurvivesWhatItDoesNotKnow) {
  const std::string events =
      Event(77, 1, R"({"host":"a.test"})") + Event(77, 1, R"({"cert_status":5})");
  EXPECT_THAT(Parse("not a log\n" + events, 100), ElementsAre());
  EXPECT_THAT(Parse("{\"constants\":{},\n" + events, 100), ElementsAre());
  // An endless line is dropped, what follows is read.
  EXPECT_THAT(Parse(kHead + std::string(6u << 20, 'x') + "\n" + events, 4096),
              ElementsAre(Pair("a.test", 5)));
}

TEST(NetLogTest, ForgetsTheHostsOfLongAgo) {
  const TempDir folder;
  std::string err;
  const auto log = engine::NetLog::Start(folder.path(), &err);
  ASSERT_TRUE(log) << err;
  std::ofstream fifo(log->path());
  fifo << kHead;
  for (int i = 0; i < 300; ++i) {
    // One that comes again and again stays.
    for (const std::string& host : {std::string("often.test"), std::to_string(i) + ".test"}) {
      fifo << Event(77, 1, R"({"host":")" + host + "\"}") << Event(77, 1, R"({"cert_status":5})");
    }
  }
  fifo.flush();
  EXPECT_TRUE(log->Fault("299.test", 0, std::chrono::seconds(10)));
  EXPECT_TRUE(log->Fault("often.test", 4, std::chrono::seconds(0)));
  EXPECT_FALSE(log->Fault("0.test", 0, std::chrono::seconds(0)));
}
