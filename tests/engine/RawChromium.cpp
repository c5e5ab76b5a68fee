#include "tests/engine/RawChromium.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "cef/chromium/ChildProcess.h"
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

RawChromium::Message RawChromium::Next() {
  size_t end;
  while ((end = buffer_.find('\0')) == std::string::npos) {
    if (!ReadMore()) throw std::runtime_error("Chromium has closed the pipe");
  }
  Message message;
  message.Parse(buffer_.c_str());
  buffer_.erase(0, end + 1);
  return message;
}

RawChromium::Message RawChromium::Call(const std::string& method, const std::string& params,
                                       const std::string& session) {
  const int id = ++last_id_;
  std::string text = "{\"id\":" + std::to_string(id) + ",\"method\":\"" + method +
                     "\",\"params\":" + params;
  if (!session.empty()) text += ",\"sessionId\":\"" + session + "\"";
  text += '}';
  const ssize_t size = static_cast<ssize_t>(text.size()) + 1;
  if (write(process_->command_fd(), text.c_str(), size) != size) {
    throw std::runtime_error("cannot write to Chromium");
  }
  const auto end = Clock::now() + kLimit;
  while (Clock::now() < end) {
    const std::string next = [this] {
      size_t stop;
      while ((stop = buffer_.find('\0')) == std::string::npos) {
        if (!ReadMore()) throw std::runtime_error("Chromium has closed the pipe");
      }
      std::string one = buffer_.substr(0, stop);
      buffer_.erase(0, stop + 1);
      return one;
    }();
    Message message;
    message.Parse(next.c_str());
    if (!message.HasMember("id")) {
      events_.push_back(next);
    } else if (message["id"].GetInt() == id) {
      if (message.HasMember("error")) throw std::runtime_error(method + ": " + next);
      Message result;
      result.CopyFrom(message["result"], result.GetAllocator());
      return result;
    }
  }
  throw std::runtime_error("no reply to " + method);
}
