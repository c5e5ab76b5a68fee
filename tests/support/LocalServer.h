// An HTTP server of a test's own on the loopback interface, which remembers what it was asked.

#ifndef TESTS_SUPPORT_LOCALSERVER_H_
#define TESTS_SUPPORT_LOCALSERVER_H_

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace httplib {
class Server;
}

// Serves from construction to destruction. What it has no answer for gets a 404 with a short body.
class LocalServer {
 public:
  struct Request {
    std::string method;
    std::string host;  // as addressed, without port
    std::string path;  // with query
    std::string cookie;
    std::string body;
    std::multimap<std::string, std::string> headers;
  };
  struct Answer {
    int status = 200;
    std::string body;
    std::string type = "text/html";
    std::multimap<std::string, std::string> headers;
  };
  // Runs on a server thread.
  using Handler = std::function<Answer(const Request&)>;

  // HTTP. Throws std::runtime_error when no port can be had.
  LocalServer();
  // HTTPS, with the certificate and key of two PEM files. With a client authority (PEM file too) it
  // serves only those who show a certificate signed by that.
  LocalServer(const std::string& certificate_file, const std::string& key_file,
              const std::string& client_authority_file = {});
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  int port() const { return port_; }
  // The address of a path on one of the names that mean this machine, such as a.localhost.
  std::string Url(const std::string& path, const std::string& host = "localhost") const;

  // Set what a path (without query) answers; later calls replace earlier ones.
  void Serve(const std::string& path, Handler handler);
  void Page(const std::string& path, const std::string& html);
  void Redirect(const std::string& path, const std::string& location,
                const std::string& set_cookie = {});

  // Every request so far, except for icons, in order of arrival.
  std::vector<Request> Requests() const;
  std::vector<Request> RequestsFor(const std::string& path) const;

 private:
  void Start();

  std::unique_ptr<httplib::Server> server_;
  bool secure_ = false;
  int port_ = 0;
  mutable std::mutex mutex_;
  std::map<std::string, Handler> handlers_;  // guarded by mutex_
  std::vector<Request> requests_;            // guarded by mutex_
  std::thread thread_;
};

#endif  // TESTS_SUPPORT_LOCALSERVER_H_
