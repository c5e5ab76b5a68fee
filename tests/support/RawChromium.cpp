#include "tests/support/RawChromium.h"

#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <stdexcept>

#include "cef/chromium/process/ChildProcess.h"
#include "tests/support/TempDir.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kLimit = std::chrono::seconds(10);

std::string Quote(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace

RawChromium::RawChromium(engine::ChromiumOptions options) {
  signal(SIGPIPE, SIG_IGN);
  if (geteuid() == 0) options.switches.emplace_back("no-sandbox", "");
  std::string err;
  options.chromium = engine::FindChromiums(&err).at(0);
  process_ = engine::ChromiumProcess::Start(options, &err);
  if (!process_) throw std::runtime_error(err);
}

bool RawChromium::ReadMore() {
  if (!engine::WaitReadable(process_->event_fd(), kLimit)) {
    throw std::runtime_error("Chromium said nothing for ten seconds");
  }
  char piece[65536];
  const ssize_t count = read(process_->event_fd(), piece, sizeof piece);
  if (count > 0) buffer_.append(piece, static_cast<size_t>(count));
  return count > 0;
}

std::string RawChromium::ReadText() {
  size_t end;
  while ((end = buffer_.find('\0')) == std::string::npos) {
    if (!ReadMore()) throw std::runtime_error("Chromium has closed the pipe");
  }
  std::string text = buffer_.substr(0, end);
  buffer_.erase(0, end + 1);
  return text;
}

RawChromium::Message RawChromium::Call(const std::string& method, const std::string& params,
                                       const std::string& session) {
  const int id = ++last_id_;
  std::string text =
      "{\"id\":" + std::to_string(id) + ",\"method\":\"" + method + "\",\"params\":" + params;
  if (!session.empty()) text += ",\"sessionId\":\"" + session + "\"";
  text += '}';
  const auto size = static_cast<ssize_t>(text.size()) + 1;
  if (write(process_->command_fd(), text.c_str(), static_cast<size_t>(size)) != size) {
    throw std::runtime_error("cannot write to Chromium");
  }
  for (const auto end = Clock::now() + kLimit; Clock::now() < end;) {
    const std::string reply = ReadText();
    Message message;
    message.Parse(reply.c_str());
    if (!message.HasMember("id")) {
      events_.push_back(reply);
    } else if (message["id"].GetInt() == id) {
      if (message.HasMember("error")) throw std::runtime_error(method + ": " + reply);
      Message result;
      result.CopyFrom(message["result"], result.GetAllocator());
      return result;
    }
  }
  throw std::runtime_error("no reply to " + method);
}

RawChromium::Message RawChromium::WaitFor(const std::string& method, const std::string& part) {
  for (const auto end = Clock::now() + kLimit; Clock::now() < end;) {
    if (events_.empty()) events_.push_back(ReadText());
    const std::string event = events_.front();
    events_.pop_front();
    Message message;
    message.Parse(event.c_str());
    if (message.HasMember("method") && message["method"].GetString() == method &&
        event.find(part) != std::string::npos) {
      return message;
    }
  }
  throw std::runtime_error("no " + method + " with " + part);
}

std::string RawChromium::OpenPage(const std::string& url) {
  const Message target =
      Call("Target.createTarget", "{\"newWindow\":true,\"url\":" + Quote(url) + "}");
  const Message session =
      Call("Target.attachToTarget",
           "{\"flatten\":true,\"targetId\":" + Quote(target["targetId"].GetString()) + "}");
  return session["sessionId"].GetString();
}

std::string RawChromium::Evaluate(const std::string& session, const std::string& expression) {
  const Message reply = Call(
      "Runtime.evaluate",
      "{\"awaitPromise\":true,\"returnByValue\":true,\"expression\":" + Quote(expression) + "}",
      session);
  const auto& result = reply["result"];
  return result.HasMember("value") && result["value"].IsString() ? result["value"].GetString() : "";
}

ProcessWatch::ProcessWatch(const std::string& text) {
  std::vector<pid_t> processes;
  std::set<pid_t> sessions;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const pid_t process = static_cast<pid_t>(atol(entry.path().filename().c_str()));
    if (process <= 0 || process == getpid()) continue;
    processes.push_back(process);
    const std::string folder = entry.path().string();
    const std::string texts = ReadFile(folder + "/cmdline") + ReadFile(folder + "/environ");
    if (texts.find(text) != std::string::npos) sessions.insert(getsid(process));
  }
  sessions.erase(getsid(0));
  for (pid_t process : processes) {
    if (sessions.count(getsid(process)) == 0) continue;
    const int fd = engine::OpenProcess(process);
    if (fd >= 0) fds_.push_back(fd);
  }
}

ProcessWatch::~ProcessWatch() {
  for (int fd : fds_) close(fd);
}

bool ProcessWatch::WaitForAll(std::chrono::milliseconds limit) const {
  const auto end = Clock::now() + limit;
  for (int fd : fds_) {
    if (!engine::WaitReadable(fd, end)) return false;
  }
  return true;
}
