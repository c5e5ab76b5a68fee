#include "cef/chromium/DevToolsConnection.h"

#include <utility>

#include "cef/chromium/IoThread.h"

namespace engine {
namespace {

// Event and console texts may nest deeply; the parser must not recurse with them.
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag;

// JSON-RPC's "method not found".
constexpr int kMethodNotFound = -32601;

constexpr char kConnectionClosed[] = "the connection to Chromium is closed";

}  // namespace

void DevToolsConnection::On(const std::string& method, EventHandler handler) {
  handlers_[method] = std::move(handler);
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
                              const JsonObject& params, ReplyHandler reply) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (transport_) {
      const int id = ++last_id_;
      JsonObject message;
      message.Add("id", id).Add("method", method).AddJson("params", params.str());
      if (!session.empty()) message.Add("sessionId", session);
      unanswered_[id] = {method, std::move(reply)};
      transport_->Send(message.str());
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
  Send(session, method, params, [outcome](const JsonValue* result, const std::string& text) {
    std::lock_guard<std::mutex> lock(outcome->mutex);
    outcome->done = true;
    outcome->ok = result != nullptr;
    outcome->error = text;
    outcome->arrived.notify_all();
  });
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

void DevToolsConnection::OnMessage(const std::string& text) {
  rapidjson::Document message;
  message.Parse<kParseFlags>(text.data(), text.size());
  if (message.HasParseError() || !message.IsObject()) return;

  static const JsonValue kNothing(rapidjson::kObjectType);
  if (const JsonValue* id = MemberAt(message, "id"); id && id->IsInt()) {
    const JsonValue* error = MemberAt(message, "error");
    ReplyHandler reply;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      const auto found = unanswered_.find(id->GetInt());
      if (found == unanswered_.end()) return;
      if (error && NumberAt(*error, "code") == kMethodNotFound && unknown_command_.empty()) {
        unknown_command_ = found->second.method;
      }
      reply = std::move(found->second.reply);
      unanswered_.erase(found);
    }
    if (!reply) return;
    const JsonValue* result = MemberAt(message, "result");
    if (error) {
      reply(nullptr, TextAt(*error, "message"));
    } else {
      reply(result ? result : &kNothing, "");
    }
    return;
  }
  const auto handler = handlers_.find(TextAt(message, "method"));
  if (handler == handlers_.end()) return;
  const JsonValue* params = MemberAt(message, "params");
  handler->second(TextAt(message, "sessionId"), params ? *params : kNothing);
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
