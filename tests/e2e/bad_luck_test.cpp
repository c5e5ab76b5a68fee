// Bad input, and parts that are missing: each ends the run soon, and the log says why.

#include <algorithm>

#include "libs/kxaccess/InstallPaths.h"
#include "tests/e2e/E2eTest.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class BadLuckTest : public E2eTest {
 protected:
  void ExpectNothingDone(const Subprocess::Command& command, int status,
                         const std::vector<std::string>& log) {
    const DirectReport report = RunDirectly(command);
    EXPECT_EQ(report.exit_status, status) << command.arguments[0];
    for (const std::string& text : log) EXPECT_THAT(report.log, HasSubstr(text));
    EXPECT_EQ(report.document, "");
    EXPECT_TRUE(box_->requests().empty()) << "no page was opened";
  }
};

TEST_F(BadLuckTest, RequestsThatCannotBeUsed) {
  const std::string tail = R"(,"url":"http://gateway.localhost/","cookie":"")";
  const std::string slo = R"(,"samlslourltoclearcookies":"")";
  const struct {
    std::string request;
    int status;
    std::vector<std::string> log;
  } cases[] = {
      {"{", 255, {" parse error", "Failed to Parse request "}},
      {EB_PROGRAM, 255, {" parse error", "Failed to Parse request "}},
      {"[]", 255, {" document is corrupted"}},
      {"{\"browsertype\":\"1\"" + tail + slo + "}", 255, {" no object 'browsertype'"}},
      {R"({"browsertype":1,"cookie":"")" + slo + "}", 255, {" no object 'url'"}},
      {R"({"browsertype":1,"url":"")" + slo + "}", 255, {" no object 'cookie' "}},
      {"{\"browsertype\":3" + tail + "}", 255, {"No object 'samlslourltoclearcookies'"}},
      {"{\"browsertype\":0" + tail + slo + "}",
       0,
       {"Browser type requested 0", "m_pBrowserCtrl is NULL. Aborting the navigation."}},
      {"{\"browsertype\":4" + tail + slo + "}",
       0,
       {"Browser type requested 4", "m_pBrowserCtrl is NULL. Aborting the navigation."}},
  };
  for (const auto& entry : cases)
    ExpectNothingDone(DirectCommand(entry.request), entry.status, entry.log);
}

TEST_F(BadLuckTest, CatalogsMissing) {
  const std::string resources = "/Contents/Resources/";
  const struct {
    std::string file;
    const char* log;
  } cases[] = {
      {resources + "CorvaneResource_EN.txt",
       "failed to load resource file [CorvaneResource_EN.txt]"},
      {resources + "MessageCatalogCorvaneUI_EN.txt",
       "Error loading some or all Message Catalog files."},
      {"/Contents/Plugins/VELD/access.ini", "Error loading some or all Message Catalog files."},
  };
  for (const auto& entry : cases) {
    const TakenAway away(InstallPaths::kAppBundle + entry.file);
    ExpectNothingDone(DirectCommand(Request("/saml/ok?auto=1")), 255, {entry.log});
  }
}

TEST_F(BadLuckTest, FrameworkMissing) {
  const std::string library = InstallPaths::kFrameworkLibrary;
  const TakenAway away(library);
  const DirectReport report = RunDirectly(DirectCommand(Request("/saml/ok?auto=1")));
  EXPECT_EQ(report.err, "dlopen " + library + ": " + library +
                            ": cannot open shared object file: No such file or directory\n"
                            "Failed to load the CEF framework.\n");
  EXPECT_EQ(report.exit_status, 0);
  EXPECT_THAT(report.log, HasSubstr("failed to load cef library"));
  EXPECT_EQ(report.document, "");
}

TEST_F(BadLuckTest, FrameworkOfAnotherKind) {
  const std::string library = InstallPaths::kFrameworkLibrary;
  const TakenAway away(library);
  std::filesystem::copy_file(EB_EMPTY_LIBRARY, library);
  const DirectReport report = RunDirectly(DirectCommand(Request("/saml/ok?auto=1")));
  EXPECT_EQ(report.err, "libcef_init_pointers failed \nFailed to load the CEF framework.\n");
  EXPECT_EQ(report.exit_status, 0);
  EXPECT_THAT(report.log, HasSubstr("failed to load cef library"));
}

TEST_F(BadLuckTest, DataFolderCannotBeMade) {
  Subprocess::Command command = DirectCommand(Request("/saml/ok?auto=1"));
  command.environment["HOME"] = home_.write("file", "") + "/home";
  const DirectReport report = RunDirectly(command);
  EXPECT_EQ(report.exit_status, 0) << report.err;
  EXPECT_THAT(report.log, HasSubstr("Failed to attach shared memory"));
}

TEST_F(BadLuckTest, DataFolderMissingIsMade) {
  std::filesystem::remove_all(home_.file("Library"));
  const StarterReport report =
      Run({"saml-login", "/saml/ok?auto=1", "KXSAMLEMBID=launch", false, {}});
  EXPECT_EQ(report.verdict, "signed in") << report.log;
}

TEST_F(BadLuckTest, NoDisplay) {
  Subprocess::Command command = DirectCommand(Request("/saml/ok?auto=1"));
  command.environment["DISPLAY"] = std::nullopt;
  command.environment["WAYLAND_DISPLAY"] = std::nullopt;
  const DirectReport report = RunDirectly(command);
  EXPECT_EQ(report.exit_status, 0) << report.err;
  EXPECT_EQ(report.signal, 0);
  EXPECT_NE(report.err, "") << "the reason belongs on standard error";
  EXPECT_TRUE(box_->requests().empty());
}

// Runs in a mount namespace of the test's own, for what cannot be had otherwise: a system without
// Chromium, a /tmp that may be written over.
class OtherSystemTest : public E2eTest {
 protected:
  static std::vector<std::string> Unshare() {
    if (geteuid() == 0) return {"unshare", "--mount"};
    return {"unshare", "--user", "--map-root-user", "--mount"};
  }

  void SetUp() override {
    Subprocess::Command probe;
    probe.arguments = Unshare();
    probe.arguments.insert(probe.arguments.end(), {"mount", "--bind", "/usr/bin", "/usr/bin"});
    if (RunToEnd(probe, kPatience).exit_status != 0) GTEST_SKIP() << "no mount namespaces here";
  }

  // Runs the program there, after the shell lines of `script`; $1 is `folder`.
  Subprocess::Command Command(const std::string& script, const std::string& folder) const {
    Subprocess::Command command = DirectCommand("");
    command.program.clear();
    command.arguments = Unshare();
    command.arguments.insert(command.arguments.end(),
                             {"/bin/bash", "-ec", script + "\nexec -a \"$2\" \"$3\"", "bash",
                              folder, Request("/saml/ok?auto=1"), EB_PROGRAM});
    return command;
  }
};

TEST_F(OtherSystemTest, WithoutChromium) {
  std::filesystem::create_directories(home_.file("nothing"));
  const DirectReport report =
      RunDirectly(Command("for folder in /usr/lib/chromium /usr/lib/chromium-browser; do\n"
                          "  [ ! -d $folder ] || mount --bind \"$1\" $folder\n"
                          "done\n"
                          "for command in chromium chromium-browser google-chrome; do\n"
                          "  file=$(command -v $command) || continue\n"
                          "  mount --bind /dev/null \"$(realpath \"$file\")\"\n"
                          "done\n",
                          home_.file("nothing")));
  EXPECT_EQ(report.exit_status, 0) << report.err;
  EXPECT_THAT(report.err, HasSubstr("Chromium is not installed"));
  EXPECT_TRUE(box_->requests().empty());
}

TEST_F(OtherSystemTest, WithoutHome) {
  // Another /tmp, in which the build and the display's socket keep their places.
  const std::string tmp = home_.file("other");
  std::filesystem::create_directories(tmp);
  Subprocess::Command command = Command(
      "for keep in /tmp/.X11-unix \"$EB_STAGE\"; do case $keep in /tmp/*)\n"
      "  mkdir -p \"$1/${keep#/tmp/}\"; mount --rbind \"$keep\" \"$1/${keep#/tmp/}\";; esac; done\n"
      "unset HOME TMPDIR\nmount --rbind \"$1\" /tmp\n",
      tmp);
  command.environment["EB_STAGE"] = InstallPaths::kRoot;
  Subprocess program(command);
  const DirectReport report = DirectEnd(program, tmp);
  EXPECT_EQ(report.exit_status, 0) << report.err;
  EXPECT_THAT(report.document, HasSubstr("\"postauthcookie\":\"KXSAMLEBSTATEID=")) << report.log;
}

}  // namespace
