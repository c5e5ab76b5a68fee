// The doctor must name what stands in the way of a sign-in: each obstacle is really put there.

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <rapidjson/document.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/shm.h>

#include <regex>
#include <set>

#include "cef/chromium/devtools/DevToolsCalls.h"
#include "libs/kxaccess/InstallPaths.h"
#include "platform/SharedMemoryName.h"
#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"
#include "tests/support/VirtualDisplay.h"

namespace {

// What the obstacles' shell lines use: where things are, other contents for a folder or a file, and
// another Chromium.
constexpr char kShell[] = R"(FAKE=$HOME/fake DATA="$HOME/Library/Application Support/Corvane Secure"
hide() { mkdir -p "$1"; mount -t tmpfs "${@:2}" none "$1"; }
replace() { cat >"$FAKE/x"; chmod 755 "$FAKE/x"; mount --bind "$FAKE/x" "$1"; }
chromium() {
  local all=(/usr/lib*/chromium*/chromium* /usr/{,local/}bin/{chromium,chromium-browser,google-chrome})
  for file in $(realpath -q "${all[@]}" /opt/google/chrome/chrome | sort -u); do
    [ ! -x "$file" ] || mount --bind "$1" "$file"
  done
}
fake_chromium() { (echo '#!/bin/bash'; cat) >"$FAKE/c"; chmod 755 "$FAKE/c"; chromium "$FAKE/c"; }
)";

// Knows all commands but one.
constexpr char kOldChromium[] = R"(fake_chromium <<'END'
while IFS= read -r -d '' call <&3; do
  id=${call#*'"id":'} answer='"result":{"product":"Chrome/1","targetId":"T","sessionId":"S"}'
  [[ $call != *.setCookies* ]] || answer='"error":{"code":-32601,"message":"It wasn'"'t found\"}"
  printf '{"id":%s,%s}\0' "${id%%,*}" "$answer" >&4
done
END)";

class DoctorTest : public testing::Test {
 protected:
  DoctorTest() {
    for (const auto& folder : {data_ + "cef", fake_}) std::filesystem::create_directories(folder);
    if (Run("hide \"$FAKE\"; exec true").exit_status != 0) unshare_.clear();
  }

  Subprocess::End Run(const std::string& script) const {
    Subprocess::Command command;
    command.arguments = unshare_;
    const std::string whole = kShell + script + "\nexec \"$0\" --json";
    command.arguments.insert(command.arguments.end(), {"/bin/bash", "-ec", whole, EB_DOCTOR});
    command.environment = {{"HOME", home_.path()},
                           {"APP", std::string(InstallPaths::kAppBundle) + "/Contents"},
                           {"LOG", InstallPaths::kLogFolder},
                           {"FRAMEWORK", InstallPaths::kFrameworkFolder}};
    return RunToEnd(command, std::chrono::seconds(60));
  }

  // "severity id: found", a line each.
  static std::string Lines(const Subprocess::End& end) {
    rapidjson::Document json;
    json.Parse(end.out.c_str());
    if (!json.IsObject()) return end.out + end.err;
    std::string text;
    for (const auto& check : json["checks"].GetArray()) {
      const std::string severity = check["severity"].GetString();
      text += severity + " " + check["id"].GetString() + ": " + check["found"].GetString() + "\n";
      EXPECT_EQ(severity == "ok", check["advice"].GetStringLength() == 0) << text;
    }
    return text;
  }

  const TempDir home_;
  const std::string data_ = home_.path() + InstallPaths::kDataFolderUnderHome;
  const std::string fake_ = home_.file("fake");
  const VirtualDisplay display_;
  std::vector<std::string> unshare_ = {"unshare", "--mount", "--map-root-user"};
};

TEST_F(DoctorTest, NamesWhatIsInTheWay) {
  if (unshare_.empty()) GTEST_SKIP() << "no mount namespaces here";
  for (const uint16_t port : {6077, 8088}) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {AF_INET, htons(port), {htonl(INADDR_LOOPBACK)}, {}};
    // If a test beside this one has the port, that is as good.
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) listen(fd, 9);
  }
  const int segment = shmget(ftok(data_.c_str(), 'R'), 100, IPC_CREAT | 0600);
  const int lock = semget(ftok(fake_.c_str(), 1), 1, IPC_CREAT | 0600);
  const std::string block = "Corvane Secure_debuglog.shm" + StagingSuffix(InstallPaths::kRoot);
  // Some at a time, none of which hides another; regular expressions for "severity id: found".
  const std::pair<std::string, std::vector<const char*>> obstacles[] = {
      {R"(hide "$APP/Helpers/EmbeddedBrowser.app/Resources"; hide "$DATA/cef" -o mode=700,ro
          printf '\xEF\xBB\xBF;\n[1]\nV=\xDF\n' | replace "$APP/Resources/CorvaneResource_DE.txt"
          hide /dev/shm -o size=64k; seq 9999 >"/dev/shm/)" +
           block + R"("; hide "$LOG" -o ro; ulimit -n 300)",
       {"warning main-menu", "warning profile: .*cannot be written", "warning return-segment-size",
        "warning catalog-encoding: .*_DE.txt, line 3 is not UTF-8", "warning shared-memory-folder",
        "warning log-control-block: .*else", "warning developer-port: .* by ",
        "warning log-file: no file can be created", "warning process-limits: only 300 open files"}},
      {R"(hide "$APP/Helpers"; hide "$APP/Plugins"; hide "$FRAMEWORK"; hide "$FAKE" -o nr_inodes=1
          chromium /dev/null; unset DISPLAY WAYLAND_DISPLAY HOME; export TMPDIR=$FAKE)",
       {"failure program", "failure catalogs: .*access.ini is missing",
        "failure framework: .*cannot open", "failure chromium: .*not installed",
        "failure display: DISPLAY is not set", "failure home: HOME", "failure temporary-folder"}},
      {R"(hide "$APP/Resources"; replace "$FRAMEWORK"/Chromium* <$(realpath /lib/*/libm.so.6)
          hide "$LOG"; touch "$LOG/debuglog.log"; (umask 0; truncate -s 30M "$FAKE/full")
          mount --bind "$FAKE/full" "$LOG/debuglog.log"; mount -o remount,ro "$LOG"
          fake_chromium <<<'echo no luck >&2'; export DISPLAY=:4321 HOME=$FAKE/c)",
       {"failure catalogs: .*_EN.txt is missing", "failure framework: .*has no cef_api_hash",
        "failure chromium-start: .*it says: no luck", "failure display: .*is gone",
        "warning log-file: .*is full and cannot be renamed", "failure home: .*c is not a folder",
        "failure data-folder: .*c is not a folder"}},
      {R"(hide /etc/chromium; mkdir -p /etc/chromium/policies/managed
          echo '{"RemoteDebuggingAllowed":false}' >/etc/chromium/policies/managed/all.json)",
       {"failure chromium-policy: .*RemoteDebuggingAllowed in .*/all.json"}},
      {R"(exec unshare --user --map-user=65534 --keep-caps /bin/bash -ec '
          echo 0 >/proc/sys/user/max_user_namespaces
          exec setpriv --ambient-caps=-all --inh-caps=-all "$0" --json' "$0")",
       {"warning chromium-sandbox: .*without its sandbox"}},
      {"export FAKE_API_HASH=x DISPLAY=127.0.0.1:77; hide \"$DATA\" -o mode=700,size=16k\n"
       "mkdir -p \"$LOG\"; hide \"${LOG%/*}\" -o ro\n"
       "for file in passwd nsswitch.conf; do mount --bind /dev/null /etc/$file; done\n"
       "replace \"$FRAMEWORK\"/Chromium* <'" EB_OTHER_FRAMEWORK "'\n" +
           std::string(kOldChromium),
       {"failure framework: .*has the version \"x\"", "failure display: no answer within",
        "failure chromium-calls: .*Chrome/1 does not know Storage.setCookies", "warning user-entry",
        "warning log-folder: .*nothing can be created.*no home folder",
        "warning log-file: nothing is ever written to ", "warning disk-space: 0 MB free"}},
      {R"(fake_chromium <<<'exec sleep 60'; ln -s elsewhere-1 "$DATA/cef/SingletonLock"
          mkdir -p "$LOG"; mount --bind "$FAKE" "$LOG")",
       {"failure chromium-start: .*no answer", "warning log-lock: .*held",
        "warning profile-lock: "}},
      {"exec unshare --ipc sh -c 'echo 0 >/proc/sys/kernel/shmmni; exec \"$0\" --json' \"$0\"",
       {"failure shared-memory-limit: 0 of 0"}},
  };
  for (const auto& [script, expected] : obstacles) {
    const Subprocess::End end = Run(script);
    const std::string lines = Lines(end);
    for (const char* line : expected)
      EXPECT_TRUE(std::regex_search(lines, std::regex(line))) << line << " in\n" << lines;
    EXPECT_EQ(end.exit_status, lines.find("failure ") == lines.npos ? 1 : 2) << lines;
  }
  shmctl(segment, IPC_RMID, nullptr);
  semctl(lock, 0, IPC_RMID);
}

// The documents' tables are those of the program, have every check, and only verdicts that the
// starter has.
TEST_F(DoctorTest, LeavesNothingAndIsDescribed) {
  const std::string healthy = Lines(Run("export TMPDIR=$FAKE"));
  // A test beside this one may have the port, a container a small /dev/shm.
  EXPECT_FALSE(std::regex_search(healthy, std::regex("warning (?!dev|shared-m)|failure ")))
      << healthy;
  EXPECT_TRUE(std::filesystem::is_empty(fake_) && std::filesystem::is_empty(data_ + "cef"));
  const std::string section = Run("exec \"$0\" --markdown").out;
  EXPECT_NE(ReadFile(EB_SOURCES "/docs/TROUBLESHOOTING.md").find(section), section.npos);
  const std::string commonest = Run("exec \"$0\" --commonest").out;
  EXPECT_NE(ReadFile(EB_SOURCES "/README.md").find(commonest), commonest.npos);
  const std::string starter = Run("exec '" EB_STARTER "' --help").out + "verdict";
  const std::regex verdict("\\| ([a-z ]+) \\|\n");
  for (std::sregex_iterator it(section.begin(), section.end(), verdict), end; it != end; ++it)
    EXPECT_NE(starter.find((*it)[1]), starter.npos) << (*it)[1];
  const std::regex id("[a-z]+ (.*?): .*\n");
  for (std::sregex_iterator it(healthy.begin(), healthy.end(), id), end; it != end; ++it)
    EXPECT_NE(section.find("| `" + (*it)[1].str() + "` |"), section.npos) << (*it)[1];
  EXPECT_EQ(Run("exec \"$0\" --jsn").exit_status, 3);
}

TEST(DevToolsCalls, AreThoseThatTheSourcesSend) {
  std::set<std::string> sent, listed;  // events are listened to
  const std::regex name(R"--((On\(\s*)?"([A-Z][A-Za-z]+\.[a-z][A-Za-z]+)")--");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(EB_SOURCES "/cef/chromium")) {
    const bool source = entry.is_regular_file() && entry.path().extension() != ".h";
    const std::string text = source ? ReadFile(entry.path()) : "";
    for (std::sregex_iterator it(text.begin(), text.end(), name), end; it != end; ++it)
      if (!(*it)[1].matched) sent.insert((*it)[2]);
  }
  for (const engine::DevToolsCall& call : engine::kDevToolsCalls) listed.insert(call.method);
  EXPECT_EQ(sent, listed);
}

}  // namespace
