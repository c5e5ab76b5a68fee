// Chromium itself: started on a profile of its own, without a window, and asked what it knows.

#include <unistd.h>

#include <future>
#include <memory>
#include <string>

#include "libs/kxaccess/RunPaths.h"
#include "cef/chromium/ChromiumProcess.h"
#include "cef/chromium/DevToolsCalls.h"
#include "cef/chromium/DevToolsConnection.h"
#include "cef/chromium/IoThread.h"
#include "cef/chromium/Profile.h"
#include "tools/doctor/Checks.h"

namespace doctor {

namespace {

using engine::DevToolsConnection;
using engine::JsonObject;
using engine::JsonValue;

// The framework waits as long for the first answer.
constexpr std::chrono::seconds kStartLimit{14};
constexpr std::chrono::seconds kAnswerLimit{2};
constexpr std::chrono::seconds kEndLimit{1};
constexpr char kOutputFile[] = "/output";
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
std::unique_ptr<engine::ChromiumProcess> Start(const std::string& profile,
                                               const std::string& run_folder, std::string* error) {
  engine::ChromiumOptions options;
  options.profile_dir = profile;
  options.private_profile = true;
  options.switches = {{"headless", "new"}, {"no-sandbox", ""}};
  options.output_file = run_folder + kOutputFile;
  options.run_folder = run_folder;
  return engine::ChromiumProcess::Start(options, error);
}

// The last line that Chromium has printed, as a half sentence; empty when it has not.
std::string LastWords(const std::string& run_folder) {
  const std::string last = engine::LastOutputLine(run_folder + kOutputFile);
  return last.empty() ? last : "; it says: " + last;
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
  return Ok("chromium", name);
}

}  // namespace

Finding CheckChromium() {
  std::string error;
  const std::string program = engine::FindChromium(&error);
  if (program.empty()) return Failure("chromium", error);
  if (!engine::IoThread::Get().Start()) return Failure("process-limits", "no descriptors left");

  // In the order of their making; they are given up in the reverse order.
  const auto profile = OpenProfile(&error);
  const std::string folder = profile ? engine::MakeRunFolder(&error) : std::string();
  if (folder.empty()) return Failure("chromium-start", "cannot be tried: " + error);
  const auto process = Start(profile->dir(), folder, &error);
  if (!process) return Failure("chromium-start", program + ": " + error);
  // Left alone at the end, as the IO thread may still hold it.
  auto* connection = new DevToolsConnection;
  connection->Open(process->command_fd(), process->event_fd());

  Finding finding;
  if (connection->Call("", "Browser.getVersion", {}, kStartLimit, &error)) {
    finding = Examine(*connection, program);
    connection->Send("", "Browser.close");
    process->WaitForExit(kEndLimit);
  } else {
    finding = Failure("chromium-start", program + ": " + error + LastWords(folder));
  }
  process->Kill();
  connection->WaitClosed(kEndLimit);
  return finding;
}

}  // namespace doctor
