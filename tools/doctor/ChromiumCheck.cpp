// Chromium itself: started on an empty profile, without a window, and asked what it knows.

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/devtools/DevToolsCalls.h"
#include "cef/chromium/devtools/DevToolsConnection.h"
#include "cef/chromium/process/ChromiumProcess.h"
#include "cef/chromium/process/Launch.h"
#include "cef/chromium/process/Profile.h"
#include "libs/kxaccess/RunPaths.h"
#include "tools/doctor/Checks.h"

namespace doctor {

namespace {

using engine::DevToolsConnection;
using engine::JsonObject;
using engine::JsonValue;

constexpr std::chrono::seconds kAnswerLimit{2};
constexpr std::chrono::seconds kEndLimit{1};
constexpr char kUnknownCommand[] = "wasn't found";

struct Answer {
  bool arrived = false;
  std::string member;  // the text of the member asked for
  std::string error;
};

Answer Ask(DevToolsConnection& connection, const std::string& session, const char* method,
           const JsonObject& params = {}, const char* member = "") {
  // Shared, since the answer may come after the wait was given up.
  const auto answer = std::make_shared<std::promise<Answer>>();
  std::future<Answer> arrives = answer->get_future();
  connection.Send(session, method, params,
                  [answer, member](const JsonValue* result, const std::string& error) {
                    answer->set_value({true, result ? engine::TextAt(*result, member) : "", error});
                  });
  if (arrives.wait_for(kAnswerLimit) != std::future_status::ready) return {};
  return arrives.get();
}

// Opens a page that nobody sees and attaches to it; its session, empty when that fails.
std::string OpenPage(DevToolsConnection& connection) {
  const std::string target =
      Ask(connection, "", "Target.createTarget", JsonObject().Add("url", "about:blank"), "targetId")
          .member;
  if (target.empty()) return {};
  return Ask(connection, "", "Target.attachToTarget",
             JsonObject().Add("targetId", target).Add("flatten", true), "sessionId")
      .member;
}

// In the temporary folder, or beside the user's own profile where that has no room.
std::unique_ptr<engine::Profile> OpenProfile(std::string* error) {
  auto profile = engine::Profile::OpenPrivate("", error);
  const RunPaths paths = RunPaths::FromEnvironment();
  if (!profile && access(paths.channel.c_str(), W_OK) == 0) {
    profile = engine::Profile::OpenPrivate(paths.browser_data, error);
  }
  return profile;
}

// As the framework starts it, but without a window.
std::unique_ptr<engine::ChromiumProcess> Start(const engine::InstalledChromium& chromium,
                                               bool sandbox, const std::string& profile,
                                               std::string* error) {
  engine::ChromiumOptions options;
  options.chromium = chromium;
  options.profile_dir = profile;
  options.private_profile = true;
  options.switches = {{"headless", "new"}};
  if (!sandbox) options.switches.emplace_back("no-sandbox", "");
  return engine::ChromiumProcess::Start(options, error);
}

// The first number of a version such as "Chrome/120.0.6099.224".
int MajorVersion(const std::string& product) {
  return atoi(product.c_str() + std::min(product.size(), product.find('/') + 1));
}

// What is wrong with the Chromium behind the connection, as far as our commands go.
Finding Examine(DevToolsConnection& connection, const std::string& program) {
  const Answer version = Ask(connection, "", "Browser.getVersion", {}, "product");
  const std::string name = program + ", " + version.member;
  const std::string page = OpenPage(connection);
  if (page.empty()) return Failure("chromium-start", name + " opens no page");
  for (const engine::DevToolsCall& call : engine::kDevToolsCalls) {
    const Answer answer = Ask(connection, call.of_page ? page : "", call.method);
    if (answer.error.find(kUnknownCommand) != std::string::npos) {
      return Failure("chromium-calls", name + " does not know " + call.method);
    }
    if (!answer.arrived) {
      return Failure("chromium-start", name + " does not answer " + call.method);
    }
  }
  if (MajorVersion(version.member) < engine::kOldestTriedChromium) {
    return Warning("chromium-old", name + " is older than " +
                                       std::to_string(engine::kOldestTriedChromium) +
                                       ", the oldest that has been tried");
  }
  return Ok("chromium", name);
}

// Looks at one that is installed; *no_sandbox tells whether it could not have its sandbox.
Finding Try(const engine::InstalledChromium& chromium, bool sandbox, bool* no_sandbox) {
  const std::string& program = chromium.path;
  std::string error;
  // In the order of their making; they are given up in the reverse order.
  const auto profile = OpenProfile(&error);
  if (!profile) return Failure("chromium-start", "cannot be tried: " + error);
  const auto process = Start(chromium, sandbox, profile->dir(), &error);
  if (!process) return Failure("chromium-start", program + ": " + error);
  // Left alone at the end, as the IO thread may still hold it.
  auto* connection = new DevToolsConnection;
  connection->Open(process->command_fd(), process->event_fd());

  Finding finding;
  if (connection->Call("", "Browser.getVersion", {}, engine::kChromiumStartLimit, &error)) {
    finding = Examine(*connection, program);
    connection->Send("", "Browser.close");
    process->WaitForExit(kEndLimit);
  } else {
    engine::ChromiumOutput& output = process->output();
    *no_sandbox = output.TellsOfNoSandbox();
    const std::string words = output.LastLine();
    if (!words.empty()) error += "; it says: " + words;
    finding = Failure(output.TellsOfPolicy() ? "chromium-policy" : "chromium-start",
                      program + ": " + error);
  }
  process->Kill();
  connection->WaitClosed(kEndLimit);
  return finding;
}

Finding Look(const engine::InstalledChromium& chromium) {
  const std::string policy = engine::ForbiddingPolicy(chromium);
  if (!policy.empty()) return Failure("chromium-policy", policy);
  const bool root = geteuid() == 0;
  bool no_sandbox = false;
  const Finding finding = Try(chromium, !root, &no_sandbox);
  if (!no_sandbox || root) return finding;
  const Finding without = Try(chromium, false, &no_sandbox);
  if (without.severity != Severity::kOk) return without;
  return Warning("chromium-sandbox", without.found + ", runs without its sandbox only");
}

}  // namespace

// The first one that can be used counts; if there is none, the first one that is installed.
Finding CheckChromium() {
  std::string error;
  const std::vector<engine::InstalledChromium> installed = engine::FindChromiums(&error);
  if (installed.empty()) return Failure("chromium", error);
  if (!engine::IoThread::Get().Start()) return Failure("process-limits", "no descriptors left");
  Finding first;
  const auto end = std::chrono::steady_clock::now() + engine::kChromiumStartLimit;
  for (const engine::InstalledChromium& chromium : installed) {
    const Finding finding = Look(chromium);
    if (finding.severity != Severity::kFailure) return finding;
    if (first.problem.empty()) first = finding;
    // A run waits no longer either.
    if (std::chrono::steady_clock::now() >= end) break;
  }
  return first;
}

}  // namespace doctor
