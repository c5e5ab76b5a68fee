#include "tests/e2e/E2eTest.h"

#include <fcntl.h>
#include <poll.h>
#include <rapidjson/document.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/sem.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <regex>
#include <sstream>
#include <thread>

#include "libs/kxaccess/InstallPaths.h"
#include "tests/support/LogRecords.h"
#include "tests/support/Segment.h"
#include "tests/support/TrustStore.h"

namespace {

constexpr std::chrono::seconds kLeavingTime{5};

std::string TextMember(const rapidjson::Value& object, const char* key) {
  const auto found = object.FindMember(key);
  return found != object.MemberEnd() && found->value.IsString() ? found->value.GetString() : "";
}

std::string CommandLine(pid_t process) {
  return ReadFile("/proc/" + std::to_string(process) + "/cmdline");
}

// Exactly one of these stands near the end of each run's log.
constexpr std::array kEndings = {
    "Calling CefQuitMessageLoop",
    "CefInitialize failed, no browser could be started",
    "the message loop has ended, but no browser has opened",
    "failed to load cef library",
    "failed to load resource file",
    "Error loading some or all Message Catalog files.",
    "Failed to Parse request ",
    "m_pBrowserCtrl is NULL. Aborting the navigation.",
};

void ExpectSaysHowItEnded(const std::string& log) {
  const auto count = std::count_if(kEndings.begin(), kEndings.end(), [&](const char* ending) {
    return log.find(ending) != std::string::npos;
  });
  EXPECT_EQ(count, 1) << "the log does not say how the run ended:\n" << log;
}

// True when the lock that all writers of the log share can be had.
bool LogLockIsFree() {
  const int id = semget(ftok(InstallPaths::kLogFolder, 1), 0, 0);
  if (id == -1) return errno == ENOENT;
  sembuf take = {0, -1, SEM_UNDO};
  sembuf give = {0, 1, SEM_UNDO};
  const timespec limit = {kLeavingTime.count(), 0};
  return semtimedop(id, &take, 1, &limit) == 0 && semop(id, &give, 1) == 0;
}

// True when nobody holds the folder's lock.
bool IsUnlocked(const std::string& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor == -1) return true;
  const bool unlocked = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
  close(descriptor);
  return unlocked;
}

}  // namespace

E2eTest::E2eTest() {
  for (const char* path : {InstallPaths::kFrameworkLibrary}) TakenAway::Restore(path);
  for (const char* path : {"/Contents/Resources/CorvaneResource_EN.txt",
                           "/Contents/Resources/MessageCatalogCorvaneUI_EN.txt",
                           "/Contents/Plugins/VELD/access.ini"}) {
    TakenAway::Restore(InstallPaths::kAppBundle + std::string(path));
  }
  display_ = std::make_unique<VirtualDisplay>(VirtualDisplay::WindowManager::kOpenbox);
  box_ = std::make_unique<GatewayBox>();
  std::filesystem::create_directories(DataFolder());
  std::filesystem::create_directories(home_.file("tmp"));
  std::error_code none;
  const auto size = std::filesystem::file_size(InstallPaths::kLogFile, none);
  log_begin_ = none ? 0 : size;
  evidence_ = std::make_unique<Evidence>([this](const std::string& folder) {
    display_->Run({"import", "-window", "root", folder + "/screen.png"});
    const std::string log = ReadFile(InstallPaths::kLogFile);
    std::ofstream(folder + "/debuglog.log") << log.substr(std::min(log_begin_, log.size()));
    std::ofstream(folder + "/cef_browser.log") << ReadFile(DataFolder() + "cef_browser.log");
    const pid_t helper = HelperProcess();
    Subprocess::Command explain;
    explain.arguments = {EB_LOG_READER, "--explain", std::to_string(helper > 0 ? helper : asked_)};
    const Subprocess::End told = RunToEnd(explain, std::chrono::seconds(10));
    std::ofstream(folder + "/explained.txt") << told.out << told.err;
  });
}

void E2eTest::TearDown() { ExpectNothingLeft(); }

void E2eTest::ExpectNothingLeft() const {
  for (const pid_t process : UserProcesses()) {
    EXPECT_TRUE(EndsWithin(process, kLeavingTime)) << "left behind: " << CommandLine(process);
    kill(process, SIGKILL);
  }
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(DataFolder(), none)) {
    const std::string name = entry.path().filename();
    EXPECT_FALSE(name.rfind("cef", 0) == 0 && name != "cef" && name != "cef_browser.log") << name;
  }
  EXPECT_FALSE(std::filesystem::exists(home_.file("Downloads"))) << "a page's file on the disk";
  const std::string profile = DataFolder() + "cef";
  for (const char* lock : {"SingletonLock", "SingletonSocket", "SingletonCookie"}) {
    EXPECT_FALSE(std::filesystem::is_symlink(profile + "/" + lock)) << "left: " << lock;
  }
  EXPECT_TRUE(IsUnlocked(profile));
  EXPECT_TRUE(LogLockIsFree());
  std::string fault;
  ReadLog(InstallPaths::kLogFile, log_begin_, &fault);
  EXPECT_EQ(fault, "");
  for (const auto& entry : std::filesystem::directory_iterator(home_.file("tmp"))) {
    ADD_FAILURE() << "temporary file left: " << entry.path();
    std::filesystem::remove_all(entry.path(), none);
  }
  EXPECT_EQ(SegmentId(DataFolder()), -1) << "segment left: " << TakeSegment(DataFolder());
}

std::string E2eTest::DataFolder() const {
  return home_.path() + InstallPaths::kDataFolderUnderHome;
}

std::string E2eTest::Address(const std::string& path, bool https) const {
  return (https ? box_->https_origin() : box_->http_origin()) + path;
}

void E2eTest::TrustBox() { TrustAuthority(home_.path(), box_->authority_pem()); }

void E2eTest::UseUnknownAuthority() {
  GatewayBox::Options options;
  options.certificate = CertificateKind::kUnknownAuthority;
  options.certificate_for = "gateway";
  box_ = std::make_unique<GatewayBox>(options);
  TrustBox();
}

Subprocess::Command E2eTest::StarterCommand(const Step& step) const {
  Subprocess::Command command;
  command.arguments = {EB_STARTER, "--json",   "--type",
                       step.type,  "--url",    Address(step.path, step.https),
                       "--cookie", step.cookie};
  command.arguments.insert(command.arguments.end(), step.options.begin(), step.options.end());
  command.environment = {{"HOME", home_.path()}, {"TMPDIR", home_.file("tmp")}};
  return command;
}

StarterReport E2eTest::Report(Subprocess& starter) {
  StarterReport report;
  const auto end = starter.Wait(kPatience);
  EXPECT_TRUE(end) << "the starter did not end";
  if (!end) return report;
  report.exit_status = end->exit_status;
  report.err = end->err;
  rapidjson::Document json;
  json.Parse(end->out.c_str());
  EXPECT_TRUE(json.IsObject()) << end->out << end->err;
  if (!json.IsObject()) return report;
  report.verdict = TextMember(json, "verdict");
  report.reason = TextMember(json, "reason");
  report.detail = TextMember(json, "detail");
  report.helper_exit_status = json["helper_exit_status"].GetInt();
  report.log = LogOf(json["helper_process"].GetInt());
  const rapidjson::Value& data = json["return_data"];
  if (data.IsObject()) {
    report.post_auth_cookie = TextMember(data, "postauthcookie");
    report.idp_cookies = TextMember(data, "samlidpcookies");
    report.logout_url = TextMember(data, "samlidplogoutrequesturl");
    report.slo_state = data["samlslostate"].GetInt();
  }
  EXPECT_TRUE(!starter_is_whole_ || report.verdict != "unreadable result") << report.detail;
  const bool ended = json["helper_killed_by"].GetInt() == 0 && report.verdict != "not started";
  if (ended && log_is_whole_) ExpectSaysHowItEnded(report.log);
  return report;
}

StarterReport E2eTest::Run(const Step& step) {
  Subprocess starter(StarterCommand(step));
  return Report(starter);
}

Subprocess::Command E2eTest::DirectCommand(const std::string& argument) const {
  Subprocess::Command command;
  command.arguments = {argument};
  command.program = EB_PROGRAM;
  command.environment = {{"HOME", home_.path()}, {"TMPDIR", home_.file("tmp")}};
  return command;
}

std::string E2eTest::Request(const std::string& path) const {
  return R"({"browsertype":1,"url":")" + Address(path) +
         R"(","cookie":"KXSAMLEMBID=launch","samlslourltoclearcookies":""})";
}

DirectReport E2eTest::DirectEnd(Subprocess& program, const std::string& data_folder) {
  DirectReport report;
  const auto end = program.Wait(kPatience);
  EXPECT_TRUE(end) << "the program did not end";
  report.document = TakeSegment(data_folder);
  report.log = LogOf(program.pid());
  if (!end) return report;
  report.exit_status = end->exit_status;
  report.signal = end->signal;
  report.err = end->err;
  EXPECT_EQ(end->out, "") << "nothing belongs on standard output";
  rapidjson::Document json;
  EXPECT_TRUE(report.document.empty() || !json.Parse(report.document.c_str()).HasParseError())
      << report.document;
  if (report.signal == 0) ExpectSaysHowItEnded(report.log);
  return report;
}

DirectReport E2eTest::RunDirectly(const Subprocess::Command& command) {
  Subprocess program(command);
  return DirectEnd(program, DataFolder());
}

std::string E2eTest::LogOf(pid_t process) const {
  asked_ = process;
  std::string own;
  for (const LogRecord& record : ReadLog(InstallPaths::kLogFile, log_begin_)) {
    if (record.process == process) own += record.text + "\n";
  }
  return own;
}

std::vector<std::string> E2eTest::ErrorsIn(const std::string& log) {
  // The level stands between the time and the user.
  const std::regex error("^[0-9/]+ [0-9:.]+ 1 ");
  std::istringstream lines(log);
  std::vector<std::string> errors;
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_search(line, error)) errors.push_back(line);
  }
  return errors;
}

bool E2eTest::WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

bool E2eTest::WaitForLog(pid_t process, const std::string& text) const {
  return WaitFor([&] { return LogOf(process).find(text) != std::string::npos; });
}

bool E2eTest::WaitForRequest(const std::string& path) const {
  return WaitFor([&] { return !CookiesSentTo(path).empty(); });
}

std::vector<pid_t> E2eTest::UserProcesses() const {
  std::vector<pid_t> found;
  const std::string mark = "HOME=" + home_.path() + '\0';
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", none)) {
    const pid_t process = std::atoi(entry.path().filename().c_str());
    if (process <= 0 || process == getpid()) continue;
    const std::string environment = ReadFile(entry.path().string() + "/environ");
    const bool of_user = environment.find(mark) != std::string::npos ||
                         CommandLine(process).find(home_.path() + "/") != std::string::npos;
    if (of_user) found.push_back(process);
  }
  return found;
}

std::vector<pid_t> E2eTest::BrowserProcesses(const std::string& type) const {
  std::vector<pid_t> found;
  for (const pid_t process : UserProcesses()) {
    const std::string line = CommandLine(process);
    if (line.find("--user-data-dir=") == std::string::npos) continue;
    const size_t kind = line.find("--type=");
    const bool matches =
        type.empty() ? kind == std::string::npos
                     : kind != std::string::npos && line.compare(kind + 7, type.size(), type) == 0;
    if (matches) found.push_back(process);
  }
  return found;
}

pid_t E2eTest::HelperProcess() const {
  std::error_code none;
  for (const pid_t process : UserProcesses()) {
    const std::string link = "/proc/" + std::to_string(process) + "/exe";
    if (std::filesystem::read_symlink(link, none) == EB_PROGRAM) return process;
  }
  return -1;
}

bool E2eTest::EndsWithin(pid_t process, std::chrono::milliseconds limit) {
  const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  if (descriptor < 0) return true;
  pollfd watched = {descriptor, POLLIN, 0};
  const bool ended = poll(&watched, 1, static_cast<int>(limit.count())) == 1;
  close(descriptor);
  return ended;
}

std::vector<std::string> E2eTest::CookiesSentTo(const std::string& path) const {
  std::vector<std::string> cookies;
  for (const RecordedRequest& request : box_->requests()) {
    if (request.target.rfind(path, 0) == 0) cookies.push_back(request.cookies);
  }
  return cookies;
}

TakenAway::TakenAway(const std::string& path) : path_(path) {
  std::filesystem::rename(path_, path_ + ".away");
}

TakenAway::~TakenAway() { Restore(path_); }

void TakenAway::Restore(const std::string& path) {
  std::error_code none;
  if (std::filesystem::exists(path + ".away")) {
    std::filesystem::rename(path + ".away", path, none);
  }
}
