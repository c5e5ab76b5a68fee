// Why a run has not ended, for what no scenario of the gateway box shows.

#include <gmock/gmock.h>

#include <sstream>

#include "tools/log/Picture.h"
#include "tools/log/Runs.h"
#include "tools/log/Story.h"

namespace {

using log_reader::FindRuns;
using log_reader::Record;
using Runs = std::vector<log_reader::Run>;
using testing::HasSubstr;
using testing::Not;

constexpr char kSaml[] = "type = 1 url https://vpn.example/start?x=SECRET";
constexpr char kCustom[] = "type = 2 url https://vpn.example/start";
constexpr char kClosed[] = "EmbBrowserHandler::DoClose";
constexpr char kOver[] = "Calling CefQuitMessageLoop";
constexpr char kBytes[] = " cookies from response = 9";
constexpr char kFinished[] = "session end = 1 hc_needed 0 hc_failed 0";
constexpr char kSsoAnswer[] = "CefSAMLLogin::ProcessCookieResponse url:[https://idp.example/sso] ";

Record Of(pid_t process, const std::string& message) {
  Record record;
  record.time = "2026/11/21 21:55:02.417";
  record.level = 5;
  record.user = "ada";
  record.program = "EmbeddedBrowser";
  record.module = "cefBrowser";
  record.process = process;
  record.place = "Place:1";
  record.message = message;
  return record;
}

log_reader::Run RunOf(const std::vector<std::string>& messages) {
  std::vector<Record> records = {Of(7, "inside cefBrowser")};
  for (const std::string& message : messages) records.push_back(Of(7, message));
  return FindRuns(records).at(0);
}

// An answer to a request, at the finest level.
std::string Carried(const std::string& address, const std::string& cookies) {
  return "ProcessCookieResponse(" + address + ") = 0 cookies [" + cookies + "]";
}

TEST(LogStoryTest, SaysWhyAStepHasNotEnded) {
  const struct {
    std::vector<std::string> messages;
    std::string why;
  } kCases[] = {
      {{kSaml, kSsoAnswer, Carried("https://www.vpn.example/done", "KXSAMLEBSTATEID=3.ab")},
       "KXSAMLEBSTATEID came, but for www.vpn.example; the step began at vpn.example and counts "
       "only that host (only the www. differs)"},
      {{kSaml, kSsoAnswer, Carried("https://vpn.example:8443/done", "A=1")},
       "counts only that host (only the port differs)"},
      {{kSaml, kSsoAnswer, "Visit(KXSAMLEBSTATEID) = vpn.example /portal"},
       "holds KXSAMLEBSTATEID for vpn.example and the path /portal, but no request"},
      {{kSaml, "EmbBrowserHandler::OnResourceResponse(URL:https://idp.example/sso, Media type = 0",
        "Handling the Signal:15 received"},
       "The identity provider, idp.example, never answered."},
      {{kCustom, kBytes, kFinished,
        Carried("https://vpn.example/end", "KXEBSTATUS=EB-FINISHED; KXID=1")},
       "the request carried no KXEBID"},
      {{kCustom, kBytes, kFinished, "invalid response",
        Carried("https://vpn.example/end", "KXEBSTATUS=EB-FINISHED; KXEBID=1")},
       "EB-FINISHED came, but without KXID"},
      {{kCustom, kBytes, Carried("https://vpn.example/end", "KXEBSTATUS=EB-LAUNCH; KXEBID=1")},
       "the last one was KXEBSTATUS=EB-LAUNCH"},
      {{"type = 3 url http://vpn.example/out",
        "SAML SLO URL: http://vpn.example/vora-na/auth/logout.cgi State:0"},
       "knows the gateway only as https://vpn.example"},
      {{"type = 3 url https://vpn.example/out",
        "SAML SLO URL: https://vpn.example/vora-na/auth/logout.cgi State:1"},
       "no address off the gateway after it"},
      {{kSaml, "CefInitialize failed, no browser could be started"},
       "The browser could not be started."},
      {{kSaml, "successful saml auth ",
        "return data of 5000 bytes does not fit, nothing is written"},
       "signed in, result lost"},
      {{kSaml, kSsoAnswer}, "it is still going on, or was killed"},
  };
  for (const auto& example : kCases) {
    std::ostringstream told;
    const auto run = RunOf(example.messages);
    Explain(Tell(run), told);
    EXPECT_THAT(told.str(), AllOf(HasSubstr(example.why), Not(HasSubstr("SECRET"))));
  }
}

TEST(LogStoryTest, RunsAreToldApartByBeginningsProcessesAndPrograms) {
  Record other = Of(7, "calling something");
  other.program = other.module = "vpnd";
  const Runs runs =
      FindRuns({Of(6, kOver), Of(7, "inside cefBrowser"), Of(7, kSaml), Of(8, "inside cefBrowser"),
                Of(7, kClosed), other, Of(7, "inside cefBrowser"), Of(8, kOver)});
  std::vector<size_t> sizes;
  for (const auto& run : runs) sizes.push_back(run.records.size());
  EXPECT_THAT(sizes, testing::ElementsAre(1, 3, 2, 1));
  EXPECT_FALSE(runs[0].whole);
  std::string problem;
  EXPECT_EQ(log_reader::ChooseRun(runs, "p7", problem), &runs[3]);
  EXPECT_EQ(log_reader::ChooseRun(runs, "last-2", problem), &runs[1]);
  for (const char* none : {"last-4", "9", "last-", "first", ""}) {
    EXPECT_EQ(log_reader::ChooseRun(runs, none, problem), nullptr) << none;
  }
}

TEST(LogStoryTest, APictureHoldsNothingThatAPageCanPutIntoIt) {
  const auto run = RunOf({kSaml, "EmbBrowserHandler::OnTitleChange </text><script>'\"&\x1b\x80",
                          "Message: \xed\xa0\x80]]> Source: https://a<b/", kClosed, kOver});
  std::ostringstream out;
  Draw(Tell(run), out);
  EXPECT_THAT(out.str(), Not(testing::ContainsRegex("<script|\x1b|\x80'|\xed\xa0|a<b")));
  EXPECT_THAT(out.str(), HasSubstr("&lt;/text&gt;&lt;script&gt;"));
}

}  // namespace
