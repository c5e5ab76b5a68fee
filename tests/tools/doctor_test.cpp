// The doctor must name what stands in the way of a sign-in: each obstacle is really put there.

#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <unistd.h>

#include <regex>
#include <set>

#include "cef/chromium/devtools/DevToolsCalls.h"
#include "libs/kxaccess/InstallPaths.h"
#include "platform/SharedMemoryName.h"
#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"

namespace {

class DoctorTest : public testing::Test {
 protected:
  DoctorTest() { std::filesystem::create_directories(data_ + "cef"); }

  // Runs the doctor, with the option given, behind an obstacle of doctor_obstacles.sh.
  Subprocess::End Run(const std::string& obstacle, const std::string& option = "--json") const {
    const TempDir fake;
    Subprocess::Command command;
    command.arguments = {"unshare", "--mount", "--ipc", "--net"};
    if (geteuid() != 0) command.arguments.push_back("--map-root-user");
    command.arguments.insert(command.arguments.end(),
                             {"/bin/bash", kScript, obstacle, EB_DOCTOR, EB_DOCTOR, option});
    command.environment = {
        {"HOME", home_.path()},
        {"TMPDIR", temporary_.path()},
        {"FAKE", fake.path()},
        {"DATA", data_},
        {"SUPPORT", EB_SOURCES "/tests/support"},
        {"PYTHON", EB_PYTHON},
        {"OTHER_FRAMEWORK", EB_OTHER_FRAMEWORK},
        {"BLOCK", "Corvane Secure_debuglog.shm" + StagingSuffix(InstallPaths::kRoot)},
        {"APP", std::string(InstallPaths::kAppBundle) + "/Contents"},
        {"LOG", InstallPaths::kLogFolder},
        {"FRAMEWORK", InstallPaths::kFrameworkFolder}};
    return RunToEnd(command, std::chrono::seconds(60));
  }

  // "severity id: found", a line each.
  static std::vector<std::string> Lines(const Subprocess::End& end) {
    rapidjson::Document json;
    json.Parse(end.out.c_str());
    if (!json.IsObject()) return {end.out + end.err};
    std::vector<std::string> lines;
    for (const auto& check : json["checks"].GetArray()) {
      const std::string severity = check["severity"].GetString();
      lines.push_back(severity + " " + check["id"].GetString() + ": " + check["found"].GetString());
      EXPECT_EQ(severity == "ok", check["advice"].GetStringLength() == 0) << lines.back();
    }
    return lines;
  }

  static constexpr char kScript[] = EB_SOURCES "/tests/tools/doctor_obstacles.sh";
  const TempDir home_, temporary_;
  const std::string data_ = home_.path() + InstallPaths::kDataFolderUnderHome;
  const VirtualDisplay display_;
};

struct Obstacle {
  const char* name;
  const char* found;  // a regular expression that each complaint has to match
};

class DoctorObstacleTest : public DoctorTest, public testing::WithParamInterface<Obstacle> {};

TEST_P(DoctorObstacleTest, IsNamedAndNothingElseIs) {
  const Subprocess::End end = Run(GetParam().name);
  if (end.exit_status == 77) GTEST_SKIP() << "needs another user";
  const std::string without = "failure chromium: Chromium is not installed";
  const bool about_chromium = std::string(GetParam().name).rfind("Chromium", 0) == 0;
  int complaints = 0;
  bool failure = false;
  for (const std::string& line : Lines(end)) {
    failure = failure || line.rfind("failure ", 0) == 0;
    // A container may have little there.
    const bool usual = line.rfind("warning shared-memory-folder", 0) == 0 &&
                       GetParam().name != std::string("SharedMemoryFolderSmall");
    if (line.rfind("ok ", 0) == 0 || usual) continue;
    if (!about_chromium && line.rfind(without, 0) == 0) continue;
    EXPECT_TRUE(std::regex_search(line, std::regex("^(" + std::string(GetParam().found) + ")")))
        << line;
    ++complaints;
  }
  EXPECT_GT(complaints, 0) << end.out << end.err;
  EXPECT_EQ(end.exit_status, failure ? 2 : 1) << end.err;
}

INSTANTIATE_TEST_SUITE_P(
    All, DoctorObstacleTest,
    testing::Values(
        Obstacle{"ProgramMissing", "failure program: |warning main-menu: "},
        Obstacle{"LibraryMissing", "failure program: .* needs libgnustep-gux"},
        Obstacle{"MenuMissing", "warning main-menu: "},
        Obstacle{"CatalogsNotListed", "failure catalogs: .*access.ini is missing"},
        Obstacle{"CatalogMissing", "failure catalogs: .*_EN.txt is missing"},
        Obstacle{"CatalogLacksTexts", "warning catalogs: .*_DE.txt lacks 180 1150"},
        Obstacle{"CatalogInLatin1", "warning catalog-encoding: .*_DE.txt, line .* is not UTF-8"},
        Obstacle{"FrameworkMissing", "failure framework: .*cannot open"},
        Obstacle{"FrameworkIsAnotherLibrary", "failure framework: .*has no cef_api_hash"},
        Obstacle{"FrameworkOfAnotherVersion", "failure framework: .*has the version \"x\""},
        Obstacle{"TemporaryFolderUseless", "failure temporary-folder: cannot create"},
        Obstacle{"TemporaryFolderFull", "warning temporary-folder: cannot write"},
        Obstacle{"DisplayNotSet", "failure display: DISPLAY is not set"},
        Obstacle{"DisplayGone", "failure display: .*is gone"},
        Obstacle{"DisplaySilent", "failure display: no answer within"},
        Obstacle{"HomeNotSet", "failure home: HOME is not set"},
        Obstacle{"HomeRelative",
                 "failure home: HOME is not absolute|failure data-folder|warning disk-space"},
        Obstacle{"HomeIsAFile", "failure (home|data-folder): .*file is not a folder"},
        Obstacle{"DataFolderOpenToAll", "warning data-folder: .*can be written by others"},
        Obstacle{"DataFolderOfAnotherUser", "warning data-folder: .*the user number 12345"},
        Obstacle{"DiskFull", "warning disk-space: 0 MB free"},
        Obstacle{"ProfileReadOnly", "warning profile: .*cannot be written"},
        Obstacle{"ProfileLockedElsewhere", "warning profile-lock: .*computer elsewhere"},
        Obstacle{"SegmentTooSmall", "warning return-segment-size: .*4096 bytes: 100"},
        Obstacle{"SegmentOfAnotherUser", "warning return-segment: .*the user number 12345"},
        Obstacle{"SegmentsUsedUp", "failure shared-memory-limit: 0 of 0"},
        Obstacle{"SegmentsNearlyUsedUp", "warning shared-memory-limit: 9 of 10 segments"},
        Obstacle{"SharedPagesNearlyUsedUp", "warning shared-memory-limit: 95 of 100 pages"},
        Obstacle{"SemaphoresNearlyUsedUp", "warning semaphore-limit: 9 of 10"},
        Obstacle{"SharedMemoryFolderSmall", "warning shared-memory-folder: "},
        Obstacle{"UserWithoutAnEntry",
                 "warning user-entry|warning log-folder: .*nothing can be created.*no home folder|"
                 "warning log-file: nothing is ever written to "},
        Obstacle{"LogFolderMissing", "warning log-folder: .*does not exist"},
        Obstacle{"LogReadOnly", "warning log-file: no file can be created"},
        Obstacle{"LogIsALink", "warning log-file: .* is a symbolic link"},
        Obstacle{"LogHasAnotherName", "warning log-file: .* has other names too"},
        Obstacle{"LogIsAFolder", "warning log-file: .* is not a file"},
        Obstacle{"LogFull", "warning log-file: .*is full and cannot be renamed"},
        Obstacle{"LogLockHeld", "warning log-lock: .*held"},
        Obstacle{"LogControlBlockOdd", "warning log-control-block: .*holds something else"},
        Obstacle{"PortTaken", "warning developer-port: .* by python"},
        Obstacle{"FewOpenFiles", "warning process-limits: only 300 open files"},
        Obstacle{"SmallFilesOnly", "warning process-limits: only .* bytes in a file"},
        Obstacle{"ChromiumMissing", "failure chromium: .*not installed"},
        Obstacle{"ChromiumEndsAtOnce", "failure chromium-start: .*it says: no luck"},
        Obstacle{"ChromiumSilent", "failure chromium-start: .*no answer"},
        Obstacle{"ChromiumForbidden",
                 "failure chromium-policy: .*RemoteDebuggingAllowed in .*/p.json"},
        Obstacle{"ChromiumInEnglishOnly", "warning chromium-language: .*locales lacks eo"},
        Obstacle{"ChromiumWithoutSandbox", "warning chromium-sandbox: .*without its sandbox"},
        Obstacle{"ChromiumOld", "failure chromium-calls: .*Chrome/1 does not know .*setCookies"},
        Obstacle{"ChromiumOlderThanTried", "warning chromium-old: .*Chrome/1 is older than"},
        Obstacle{"ChromiumOpensNoPage", "failure chromium-start: .*opens no page"}),
    [](const auto& info) { return info.param.name; });

// The documents' tables are those of the program, have every check, and only verdicts that the
// starter has.
TEST_F(DoctorTest, LeavesNothingAndIsDescribed) {
  const Subprocess::End end = Run("Nothing");
  EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
  EXPECT_TRUE(std::filesystem::is_empty(data_ + "cef"));
  const std::string section = Run("MenuMissing", "--markdown").out;
  EXPECT_NE(ReadFile(EB_SOURCES "/docs/TROUBLESHOOTING.md").find(section), section.npos);
  const std::string commonest = Run("MenuMissing", "--commonest").out;
  EXPECT_NE(ReadFile(EB_SOURCES "/README.md").find(commonest), commonest.npos);
  Subprocess::Command help;
  help.arguments = {EB_STARTER, "--help"};
  const std::string starter = RunToEnd(help, std::chrono::seconds(20)).out + "verdict";
  const std::regex verdict("\\| ([a-z ]+) \\|\n");
  for (std::sregex_iterator it(section.begin(), section.end(), verdict), last; it != last; ++it)
    EXPECT_NE(starter.find((*it)[1]), starter.npos) << (*it)[1];
  for (const std::string& line : Lines(end)) {
    EXPECT_TRUE(line.rfind("ok ", 0) == 0 || line.rfind("warning shared-memory-folder", 0) == 0)
        << line;
    const std::string id = line.substr(line.find(' ') + 1, line.find(':') - line.find(' ') - 1);
    EXPECT_NE(section.find("| `" + id + "` |"), section.npos) << id;
    // Those of a run before would count.
    EXPECT_TRUE(id != "shared-memory-limit" || line.find(": 0 of ") != line.npos) << line;
  }
  EXPECT_EQ(Run("MenuMissing", "--jsn").exit_status, 3);
}

TEST(DevToolsCalls, AreThoseThatTheSourcesSend) {
  std::set<std::string> sent, listed;  // events are listened to
  const std::regex name(R"--((On\(\s*)?"([A-Z][A-Za-z]+\.[a-z][A-Za-z]+)")--");
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(EB_SOURCES "/cef/chromium")) {
    const bool source = entry.is_regular_file() && entry.path().extension() != ".h";
    const std::string text = source ? ReadFile(entry.path()) : "";
    for (std::sregex_iterator it(text.begin(), text.end(), name), end; it != end; ++it)
      if (!(*it)[1].matched) sent.insert((*it)[2]);
  }
  for (const engine::DevToolsCall& call : engine::kDevToolsCalls) listed.insert(call.method);
  EXPECT_EQ(sent, listed);
}

}  // namespace
