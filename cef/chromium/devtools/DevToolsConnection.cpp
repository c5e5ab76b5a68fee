#include "cef/chromium/devtools/DevToolsConnection.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <utility>
#include <vector>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/devtools/DevToolsMessage.h"

namespace engine {
namespace {

// JSON-RPC's "method not found".
constexpr int kMethodNotFound = -32601;

constexpr char kConnectionClosed[] = "the connection to Chromium is closed";
constexpr char kUnreadable[] = "the reply cannot be read";

// A Chromium that answers nothing but goes on to cause commands.
constexpr size_t kMostUnanswered = 1u << 16;

// A page may cause such lines at will.
constexpr int kMostComplaints = 20;
constexpr size_t kMostOfAMessage = 200;

// For whoever looks into a fault. It does not begin as the lines do that tell a user why a run has
// failed: none of this ends one.
void Complain(const std::string& text) {
  static std::atomic<int> complaints{0};
  if (++complaints > kMostComplaints) return;
  fprintf(stderr, "devtools: %s\n", text.c_str());
  fflush(stderr);
}

const JsonValue& Nothing() {
  static const JsonValue nothing(rapidjson::kObjectType);
  return nothing;
}

}  // namespace

void DevToolsConnection::On(const std::string& method, EventHandler handler,
                            std::function<bool()> wanted) {
  receivers_[method] = {std::move(handler), std::move(wanted)};
}

void DevToolsConnection::OnClosed(std::function<void()> handler) {
  on_closed_ = std::move(handler);
}

void DevToolsConnection::Open(int write_fd, int read_fd) {
  auto transport = std::make_shared<PipeTransport>(
      write_fd, read_fd, [this](const std::string& message) { OnMessage(message); },
      [this] { OnPipeClosed(); });
  {
    std::lock_guard<std::mutex> lock(mutex_);
    transport_ = transport;
    settled_ = false;
    unknown_command_.clear();
    next_look_ = Clock::time_point::max();
  }
  transport->Start();
}

bool DevToolsConnection::IsOpen() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return transport_ != nullptr;
}

void DevToolsConnection::Drop() {
  std::lock_guard<std::mutex> lock(mutex_);
  if (transport_) transport_->Drop();
}

std::string DevToolsConnection::UnknownCommand() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return unknown_command_;
}

void DevToolsConnection::Send(const std::string& session, const std::string& method,
                              const JsonObject& params, ReplyHandler reply,
                              std::chrono::milliseconds limit) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (transport_) {
      const int id = ++last_id_;
      JsonObject message;
      message.Add("id", id).Add("method", method).AddJson("params", params.str());
      if (!session.empty()) message.Add("sessionId", session);
      const Clock::time_point deadline =
          limit == kNoLimit ? Clock::time_point::max() : Clock::now() + limit;
      unanswered_[id] = {method, std::move(reply), deadline};
      WatchLimit(deadline);
      // Still locked, so that commands enter the pipe in the order of their numbers.
      transport_->Send(message.str());
      if (unanswered_.size() > kMostUnanswered) transport_->Drop();
      return;
    }
  }
  if (!reply) return;
  IoThread::Get().PostTask([reply = std::move(reply)] { reply(nullptr, kConnectionClosed); });
}

bool DevToolsConnection::Call(const std::string& session, const std::string& method,
                              const JsonObject& params, std::chrono::milliseconds limit,
                              std::string* error) {
  struct Outcome {
    std::mutex mutex;
    std::condition_variable arrived;
    bool done = false;
    bool ok = false;
    std::string error;
  };
  // Shared, since a reply may come after the wait was given up.
  const auto outcome = std::make_shared<Outcome>();
  Send(
      session, method, params,
      [outcome](const JsonValue* result, const std::string& text) {
        std::lock_guard<std::mutex> lock(outcome->mutex);
        outcome->done = true;
        outcome->ok = result != nullptr;
        outcome->error = text;
        outcome->arrived.notify_all();
      },
      limit);
  std::unique_lock<std::mutex> lock(outcome->mutex);
  if (!outcome->arrived.wait_for(lock, limit, [&] { return outcome->done; })) {
    outcome->error = "no answer to " + method + " in time";
  }
  if (error) *error = outcome->error;
  return outcome->ok;
}

bool DevToolsConnection::WaitClosed(std::chrono::milliseconds limit) {
  std::unique_lock<std::mutex> lock(mutex_);
  return closed_.wait_for(lock, limit, [this] { return settled_; });
}

// One look at a time is under way, and none when nothing is unanswered. It belongs to the pipe.
void DevToolsConnection::WatchLimit(Clock::time_point deadline) {
  if (deadline >= next_look_) return;
  next_look_ = deadline;
  IoThread::Get().PostDelayedTask(
      [this, deadline, pipe = std::weak_ptr<PipeTransport>(transport_)] {
        if (pipe.lock()) GiveUpLate(deadline);
      },
      TimeLeft(deadline).count());
}

void DevToolsConnection::GiveUpLate(Clock::time_point look) {
  std::vector<Command> late;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (look != next_look_) return;
    const Clock::time_point now = Clock::now();
    Clock::time_point next = Clock::time_point::max();
    for (auto it = unanswered_.begin(); it != unanswered_.end();) {
      if (it->second.deadline <= now) {
        late.push_back(std::move(it->second));
        it = unanswered_.erase(it);
      } else {
        next = std::min(next, it->second.deadline);
        ++it;
      }
    }
    next_look_ = Clock::time_point::max();
    WatchLimit(next);
  }
  for (const Command& command : late) {
    const std::string error = "no answer to " + command.method + " in time";
    Complain(error);
    if (command.reply) command.reply(nullptr, error);
  }
}

void DevToolsConnection::OnMessage(const std::string& text) {
  const std::string method = EventMethod(text);
  const auto receiver = receivers_.find(method);
  if (!method.empty() && receiver == receivers_.end()) return;
  if (!method.empty() && receiver->second.wanted && !receiver->second.wanted()) return;

  rapidjson::Document message;
  const bool readable = ReadMessage(text, &message);
  if (!readable) Complain("cannot read a message: " + text.substr(0, kMostOfAMessage));
  if (const JsonValue* id = MemberAt(message, "id"); id && id->IsInt()) {
    OnReply(id->GetInt(), message, readable);
  } else if (receiver != receivers_.end()) {
    const JsonValue* params = MemberAt(message, "params");
    receiver->second.handle(TextAt(message, "sessionId"), params ? *params : Nothing());
  }
}

void DevToolsConnection::OnReply(int id, const JsonValue& message, bool readable) {
  const JsonValue* error = MemberAt(message, "error");
  ReplyHandler reply;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = unanswered_.find(id);
    if (found == unanswered_.end()) return;
    if (error && NumberAt(*error, "code") == kMethodNotFound && unknown_command_.empty()) {
      unknown_command_ = found->second.method;
    }
    reply = std::move(found->second.reply);
    unanswered_.erase(found);
  }
  if (!reply) return;
  if (!readable || error) {
    reply(nullptr, error ? TextAt(*error, "message") : kUnreadable);
    return;
  }
  const JsonValue* result = MemberAt(message, "result");
  reply(result ? result : &Nothing(), "");
}

void DevToolsConnection::OnPipeClosed() {
  std::map<int, Command> unanswered;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    transport_ = nullptr;
    unanswered.swap(unanswered_);
  }
  for (const auto& [id, command] : unanswered) {
    if (command.reply) command.reply(nullptr, kConnectionClosed);
  }
  if (on_closed_) on_closed_();
  std::lock_guard<std::mutex> lock(mutex_);
  settled_ = true;
  closed_.notify_all();
}

}  // namespace engine
