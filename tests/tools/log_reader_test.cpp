// embedded-browser-log on a log that other processes write at the same time.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <map>
#include <set>

#include "tests/process/LogWriters.h"
#include "tools/log/Secrets.h"

using std::chrono::seconds;
using testing::HasSubstr;

namespace {

Subprocess::Command Reader(std::vector<std::string> arguments, uid_t user = 0) {
  Subprocess::Command command;
  if (user != 0)
    command.arguments = {"setpriv", "--reuid=" + std::to_string(user), "--clear-groups"};
  command.arguments.push_back(LOG_READER);
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  return command;
}

class LogReaderTest : public testing::Test {
 protected:
  static Subprocess::End Run(const std::vector<std::string>& arguments, uid_t user = 0) {
    return RunToEnd(Reader(arguments, user), seconds(20));
  }

  LogArea area_;
};

TEST_F(LogReaderTest, FollowsOverRotationsWithoutLossOrDoubling) {
  constexpr int kWriters = 4, kEach = 4000, kRotations = 8;
  // Only the control block says where.
  const std::string path = InstallPaths::kMachineLogPrefix + std::string("elsewhere.log");
  setenv("VELD_LOG_NAME", path.c_str(), 1);
  ASSERT_EQ(KXLogInitialize(), 1);
  KXLOG(3, "T", "first");
  Subprocess reader(Reader({"--follow", "--since", "2000-01-01"}));
  ASSERT_TRUE(reader.WaitForOutput("first", seconds(20)));
  Writer writers[kWriters];
  for (Writer& writer : writers) writer = StartWriter({std::to_string(kEach)});
  for (int i = 1; i <= kRotations; ++i) {
    ASSERT_TRUE(LogLock());
    ASSERT_EQ(rename(path.c_str(), (path + (i % 4 == 0 ? ".away" : ".old")).c_str()), 0);
    LogUnlock();
    KXLOG(3, "T", "rotation %d", i);
    // Two in a row leave it what it has open, and the two files.
    if (i % 4 != 1) {
      ASSERT_TRUE(reader.WaitForOutput("rotation " + std::to_string(i), seconds(20)));
    }
  }
  for (const Writer& writer : writers) ASSERT_EQ(StatusOf(writer), 0);
  KXLOG(3, "T", "the end");
  ASSERT_TRUE(reader.WaitForOutput("the end", seconds(20)));
  std::istringstream lines(reader.out());
  std::multiset<std::string> seen;
  for (std::string line; std::getline(lines, line);) seen.insert(line);
  EXPECT_EQ(seen.size(), 2u + kRotations + kWriters * kEach);
  EXPECT_EQ(std::set<std::string>(seen.begin(), seen.end()).size(), seen.size()) << "doubled";
  EXPECT_EQ(reader.err(), "");
}

std::string Bytes(const std::string& level_user_program, const std::string& message) {
  const std::string rest = "2026/11/21 21:55:0" + level_user_program +
                           " cefBrowser p4711 t1267 Place:149 - 'CEF' " + message + "\r\n";
  char header[16];
  snprintf(header, sizeof header, "%05zu,09 ", rest.size());
  return header + rest;
}

TEST_F(LogReaderTest, ShowsWhatIsAskedForAndNothingThatSteersATerminal) {
  const TempDir folder;
  folder.write("log.old", Bytes("1.000 1 ada one", "m1"));
  const std::string log =
      folder.write("log", Bytes("2.000 2 bob one", "m2 of\r\ntwo\n00017,09 lines") + "foreign\n" +
                              Bytes("3.000 3 ada two", "m3 \x1b[2J\x7f\xc2\x9b\xe2\x80\xae\xff ü") +
                              Bytes("4.000 4 bob two", "m4 ?a=b"));
  const std::map<std::vector<std::string>, std::string> shown = {
      {{}, "m1m2m3m4"},
      {{"--user", "ada"}, "m1m3"},
      {{"--program=two"}, "m3m4"},
      {{"--module", "CEF", "--up-to-level", "2"}, "m1m2"},
      {{"--module", "cefBrowser", "--process", "4711"}, "m1m2m3m4"},
      {{"--process", "471"}, ""},
      {{"--run", "4711"}, "m4"},
      {{"--run", "last-1"}, "m3"},
      {{"--since", "2026-11-21 21:55:02", "--until", "2026/11/21 21:55:03"}, "m2m3"},
      {{"--since", "2 min", "--until", "now"}, ""},
      {{"--grep", "lines"}, "m2"}};
  for (const auto& [options, messages] : shown) {
    std::vector<std::string> arguments = {"--file", log};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const auto end = Run(arguments);
    std::string found;
    for (size_t at = 0; (at = end.out.find("' m", at)) != std::string::npos; ++at) {
      found += end.out.substr(at + 2, 2);
    }
    EXPECT_EQ(found, messages) << testing::PrintToString(options) << end.err;
  }
  const auto all = Run({"--file", log});
  EXPECT_EQ(all.exit_status, 0);
  EXPECT_THAT(all.err, HasSubstr("1 pieces"));
  EXPECT_THAT(all.out, HasSubstr("m2 of\n    two\n    00017,09 lines\n2026"));
  EXPECT_THAT(all.out, HasSubstr("m3 \\x1b[2J\\x7f\\u009b\\u202e\\xff ü\n"));
  EXPECT_THAT(Run({"--file", log, "--secrets"}).out, HasSubstr("m4 ?a=b\n"));
  EXPECT_THAT(Run({"--file", log, "--json"}).out,
              HasSubstr(R"("tag":"CEF","message":"m4 ?a=<1 hidden>","cut":false})"));
  EXPECT_EQ(Run({"--file", folder.path()}).exit_status, 1);
  EXPECT_EQ(Run({"--since", "later"}).exit_status, 2);
}

TEST_F(LogReaderTest, LevelIsSeenByAWriterAndRefusedWhereItMayNotBeSet) {
  EXPECT_THAT(Run({"--level", "4"}).err, HasSubstr("no program has written"));
  ASSERT_EQ(KXLogInitialize(), 1);
  EXPECT_EQ(Run({"--level"}).out, "3\n");
  EXPECT_EQ(Run({"--level", "5"}).exit_status, 0);
  EXPECT_TRUE(KXLogShouldLog(5)) << "not noticed";
  const Writer holder = StartWriter({"hold"});
  ASSERT_TRUE(holder->WaitForOutput("held", seconds(20)));
  const auto held = Run({"--level", "2"});
  EXPECT_THAT(held.err, HasSubstr("last by process " + std::to_string(holder->pid())));
  holder->Signal(SIGKILL);
  ASSERT_TRUE(holder->Wait(seconds(20)));
  ControlBlock()->magic ^= 1;
  EXPECT_EQ(Run({"--level", "2"}).exit_status, 1);
  ControlBlock()->magic ^= 1;
  if (CanPlayUsers()) {
    ASSERT_EQ(chmod(("/dev/shm" + ControlBlockName(true)).c_str(), 0644), 0);
    EXPECT_THAT(Run({"--level", "2"}, kSomebody).err, HasSubstr("Permission denied"));
  }
  EXPECT_EQ(Run({"--level"}).out, "5\n");
}

// Every kind of record that holds what opens something, which stands between two "^".
TEST(LogSecretsTest, AreHiddenAndNothingElse) {
  const char* const kMessages[] = {
      "type = 1 url https://^ada:pw^@gw:8443/x/auth?code=^abc def^&SAMLRequest=^x^#^tok^",
      "CefSAMLLogin::ProcessCookieResponse url:[https://gw/a?SAMLResponse=^a%20^&^b^] ",
      "CefSAMLLogin::ProcessCookieResponse urlDomain:[sts0-1234-5678-9012-3456-7.example] "
      "m_url_domain:[gw:8443]",
      "CefSAMLLogin::ProcessCookieResponse cookie:[a=^b, c]d ^; KXSAMLEBSTATUS=1; ID=^zzz^; "
      "^lone^] "
      "kSamlAuthCookieStateID:[ID] eb_stateid:[ID=^zzz^]",
      "eb_saml_stateid = KXSAMLEBSTATEID=^zzz yy^ eb_saml_status = 1 ",
      "ProcessCookieResponse(): Gathered IdP(idp0123456789012345678901.example) cookies of size 2",
      "ProcessCookieResponse(https://gw/x?SAMLRequest=^a^) = 1 cookies [a=12.0123abcd; "
      "KXEBSTATUS=EB-FINISHED; =3.11111111; b=^raw^]",
      "EmbBrowserHandler::OnResourceResponse(URL:https://gw/p/^0123456789abcdef01234567^/"
      "^Zx9^@q;s=^1^"
      "?^code^, Media type = 6",
      "EmbBrowserHandler::OnResourceResponse(URL:https://gw)= text/html",
      "EmbBrowserHandler::OnTitleChange Success code=^4/abc^",
      "Message: {\"access_token\":\"^a b^\",\"n\":1} password: ^x^ Authorization: Bearer ^abc^ "
      "^eyJhbGciOiJIUzI1NiIsInR5cCI6IkpXVCJ9^. ^PHNhbWw/eyJhbGciOiJIUzI1NiIsInR5cCI6IkpXVCJ9^ "
      "data:text/html,^abc^ a='^q w^' Source: https://x/y.js",
      "Failed to laod URL (https://x/?a=^b^), with error (net::ERR_CERT_AUTHORITY_INVALID)",
      "inside Visitor::Visit - cookie name=[_shibsession_64656661756c7468747470] value.size():5",
      "Visit(_shibsession_64656661756c7468747470) = idp0123456789012345678901.example "
      "/a/^01234567890123456789abcd^",
      "manager->SetCookie (name:KXSAMLEMBID url:https://gw/?a=^b c^) ret = 1",
      "EmbBrowserApp::OnBeforeCommandLineProcessing",
      "createRequestForEmbBrowserReturnData() failed",
      "Error loading message catalog file /Applications/Corvane Secure.app/Contents/Resources/"
      "MessageCatalogCorvaneUI_EN.txt",
      "SAML SLO URL: https://gw/vora-na/auth/welcome.cgi?p=^logout^ State:2",
      "CefSAMLLogin::OnContextInitialized Clearing all cookies (https://gw/lo gout?x=^y z^)"};
  for (const std::string marked : kMessages) {
    std::string message, expected;
    bool secret = false;
    std::istringstream pieces(marked);
    for (std::string piece; std::getline(pieces, piece, '^'); secret = !secret) {
      message += piece;
      expected += secret ? "<" + std::to_string(piece.size()) + " hidden>" : piece;
    }
    EXPECT_EQ(log_reader::HideSecrets(message), expected);
  }
}

}  // namespace
