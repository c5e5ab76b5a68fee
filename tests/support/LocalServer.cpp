#include "tests/support/LocalServer.h"

#include <httplib.h>

#include <future>
#include <stdexcept>

namespace {

constexpr char kLoopback[] = "127.0.0.1";
// A browser keeps up to six connections open to a host.
constexpr size_t kThreads = 16;

LocalServer::Request ToRequest(const httplib::Request& from) {
  LocalServer::Request request;
  request.method = from.method;
  request.path = from.target;
  request.cookie = from.get_header_value("Cookie");
  request.body = from.body;
  request.headers.insert(from.headers.begin(), from.headers.end());
  const std::string host = from.get_header_value("Host");
  request.host = host.substr(0, host.find(':'));
  return request;
}

}  // namespace

LocalServer::LocalServer() : server_(std::make_unique<httplib::Server>()) { Start(); }

LocalServer::LocalServer(const std::string& certificate_file, const std::string& key_file,
                         const std::string& client_authority_file)
    : server_(std::make_unique<httplib::SSLServer>(
          certificate_file.c_str(), key_file.c_str(),
          client_authority_file.empty() ? nullptr : client_authority_file.c_str())),
      secure_(true) {
  Start();
}

void LocalServer::Start() {
  const auto serve = [this](const httplib::Request& from, httplib::Response& to) {
    const Request request = ToRequest(from);
    Handler handler;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      if (from.path != "/favicon.ico") requests_.push_back(request);
      const auto found = handlers_.find(from.path);
      if (found != handlers_.end()) handler = found->second;
    }
    const Answer answer = handler ? handler(request) : Answer{404, "nothing here", "text/html", {}};
    to.status = answer.status;
    for (const auto& [name, value] : answer.headers) to.headers.emplace(name, value);
    to.set_content(answer.body, answer.type.c_str());
  };
  server_->Get(".*", serve);
  server_->Post(".*", serve);
  server_->set_keep_alive_timeout(1);
  port_ = server_->is_valid() ? server_->bind_to_any_port(kLoopback) : -1;
  if (port_ <= 0) throw std::runtime_error("the test server cannot be bound");
  // Called when the server runs; before that stop() has no effect.
  std::promise<void> running;
  server_->new_task_queue = [&running] {
    running.set_value();
    return new httplib::ThreadPool(kThreads);
  };
  thread_ = std::thread([this] { server_->listen_after_bind(); });
  running.get_future().wait();
}

LocalServer::~LocalServer() {
  server_->stop();
  thread_.join();
}

std::string LocalServer::Url(const std::string& path, const std::string& host) const {
  return (secure_ ? "https://" : "http://") + host + ":" + std::to_string(port_) + path;
}

void LocalServer::Serve(const std::string& path, Handler handler) {
  std::lock_guard<std::mutex> lock(mutex_);
  handlers_[path] = std::move(handler);
}

void LocalServer::Page(const std::string& path, const std::string& html) {
  Serve(path, [html](const Request&) { return Answer{200, html, "text/html", {}}; });
}

void LocalServer::Redirect(const std::string& path, const std::string& location,
                           const std::string& set_cookie) {
  Serve(path, [location, set_cookie](const Request&) {
    Answer answer{302, "", "text/html", {{"Location", location}}};
    if (!set_cookie.empty()) answer.headers.emplace("Set-Cookie", set_cookie);
    return answer;
  });
}

std::vector<LocalServer::Request> LocalServer::Requests() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return requests_;
}

std::vector<LocalServer::Request> LocalServer::RequestsFor(const std::string& path) const {
  std::vector<Request> matching;
  for (const Request& request : Requests()) {
    if (request.path.substr(0, request.path.find('?')) == path) matching.push_back(request);
  }
  return matching;
}
