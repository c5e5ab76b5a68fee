#include "tools/gateway/GatewayBox.h"

#include <openssl/ssl.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "tools/gateway/Player.h"
#include "tools/gateway/ScenarioList.h"
#include "tools/gateway/Scenarios.h"
#include "tools/gateway/TapeScenario.h"

namespace {

constexpr char kLoopback[] = "127.0.0.1";
// Browsers open connections ahead of need, and each holds a thread until it is used or given up.
constexpr size_t kThreads = 64;
constexpr time_t kIdleSeconds = 2;
const std::vector<std::string> kHosts = {"gateway", "idp", "third"};
constexpr CertificateKind kFaults[] = {CertificateKind::kUnknownAuthority,
                                       CertificateKind::kWrongHost, CertificateKind::kExpired,
                                       CertificateKind::kWrongHostUnknownAuthority};

// The names of the three hosts, with a prefix such as "expired.".
std::vector<std::string> NamesOf(const std::string& prefix) {
  std::vector<std::string> names;
  for (const std::string& host : kHosts) names.push_back(prefix + host + ".localhost");
  return names;
}

std::vector<Scenario> Served(const GatewayBox::Options& options) {
  if (!options.tape.empty()) return {ReadTapeScenario(options.tape)};
  if (options.only.empty()) return ReadScenarios(options.scenarios);
  return {ReadScenario(options.scenarios, options.only)};
}

}  // namespace

class GatewayBox::Impl {
 public:
  explicit Impl(const Options& options)
      : player_(Served(options), [this](int milliseconds) { return Wait(milliseconds); }),
        https_([this, &options](SSL_CTX& context) { return SetUp(context, options); }) {
    Prepare(http_, "http");
    Prepare(https_, "https");
    port_ = Bind(http_, options.port);
    https_port_ = Bind(https_, options.https_port);
    http_thread_ = std::thread([this] { http_.listen_after_bind(); });
    https_thread_ = std::thread([this] { https_.listen_after_bind(); });
  }

  ~Impl() {
    {
      const std::lock_guard<std::mutex> lock(stop_mutex_);
      stopping_ = true;
    }
    stop_.notify_all();
    End(http_, http_thread_);
    End(https_, https_thread_);
  }

  int port() const { return port_; }
  int https_port() const { return https_port_; }
  std::string authority_pem() const { return authority_.certificate_pem(); }
  const RequestRecord& record() const { return record_; }
  const Player& player() const { return player_; }

 private:
  bool SetUp(SSL_CTX& context, const Options& options) {
    const std::vector<std::string> plain = NamesOf("");
    for (size_t i = 0; i < plain.size(); ++i) {
      const bool chosen = options.certificate_for.empty() || kHosts[i] == options.certificate_for;
      identities_[plain[i]] =
          authority_.Issue(chosen ? options.certificate : CertificateKind::kGood, plain);
    }
    for (const CertificateKind fault : kFaults) {
      const std::vector<std::string> names = NamesOf(CertificateKindName(fault) + std::string("."));
      for (const std::string& name : names) identities_[name] = authority_.Issue(fault, names);
    }
    Use(identities_[plain.front()], [&context](X509* certificate, EVP_PKEY* key) {
      return SSL_CTX_use_certificate(&context, certificate) == 1 &&
             SSL_CTX_use_PrivateKey(&context, key) == 1;
    });
    SSL_CTX_set_tlsext_servername_callback(&context, ChooseByName);
    SSL_CTX_set_tlsext_servername_arg(&context, this);
    return true;
  }

  template <typename Install>
  static void Use(const Identity& identity, Install install) {
    if (!install(identity.certificate.get(), identity.key.get())) {
      throw std::runtime_error("the server certificate cannot be used");
    }
  }

  static int ChooseByName(SSL* connection, int*, void* self) {
    const char* name = SSL_get_servername(connection, TLSEXT_NAMETYPE_host_name);
    const auto& identities = static_cast<Impl*>(self)->identities_;
    const auto found = identities.find(name ? name : "");
    if (found == identities.end()) return SSL_TLSEXT_ERR_NOACK;
    const bool fine = SSL_use_certificate(connection, found->second.certificate.get()) == 1 &&
                      SSL_use_PrivateKey(connection, found->second.key.get()) == 1;
    return fine ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_ALERT_FATAL;
  }

  void Prepare(httplib::Server& server, const std::string& scheme) {
    server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server.set_keep_alive_max_count(1);
    server.set_keep_alive_timeout(kIdleSeconds);
    const auto serve = [this, scheme](const httplib::Request& request,
                                      httplib::Response& response) {
      Serve(scheme, request, response);
    };
    server.Get(".*", serve);
    server.Post(".*", serve);
  }

  static int Bind(httplib::Server& server, int port) {
    if (port == 0) {
      port = server.bind_to_any_port(kLoopback);
      if (port > 0) return port;
    } else if (server.bind_to_port(kLoopback, port)) {
      return port;
    }
    throw std::runtime_error("port " + std::to_string(port) + " cannot be listened at");
  }

  static void End(httplib::Server& server, std::thread& thread) {
    // A stop before the thread has begun to accept would be overlooked; it begins at once.
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!server.is_running() && std::chrono::steady_clock::now() < limit) {
      std::this_thread::yield();
    }
    server.stop();
    thread.join();
  }

  void Serve(const std::string& scheme, const httplib::Request& request,
             httplib::Response& response) {
    Visit visit(scheme, request, response);
    if (visit.path() == "/-/requests") return visit.Send(record_.ToJson(), "application/json");
    record_.Add({0, scheme, request.get_header_value("Host"), request.method, request.target,
                 request.get_header_value("Cookie"), request.get_header_value("User-Agent")});
    if (visit.path() == "/") {
      visit.Page(IndexPage(player_.scenarios(), {port_, https_port_}));
    } else {
      player_.Play(visit);
    }
  }

  // False when the box stops before the time has passed.
  bool Wait(int milliseconds) {
    std::unique_lock<std::mutex> lock(stop_mutex_);
    return !stop_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                           [this] { return stopping_; });
  }

  const TestAuthority authority_;
  std::map<std::string, Identity> identities_;
  RequestRecord record_;
  Player player_;
  std::mutex stop_mutex_;
  std::condition_variable stop_;
  bool stopping_ = false;
  int port_ = 0;
  int https_port_ = 0;
  httplib::Server http_;
  httplib::SSLServer https_;
  std::thread http_thread_;
  std::thread https_thread_;
};

GatewayBox::GatewayBox(const Options& options) : impl_(std::make_unique<Impl>(options)) {}
GatewayBox::~GatewayBox() = default;

int GatewayBox::port() const { return impl_->port(); }
int GatewayBox::https_port() const { return impl_->https_port(); }

std::string GatewayBox::http_origin() const {
  return "http://gateway.localhost:" + std::to_string(port());
}

std::string GatewayBox::https_origin() const {
  return "https://gateway.localhost:" + std::to_string(https_port());
}

std::string GatewayBox::authority_pem() const { return impl_->authority_pem(); }

std::vector<RecordedRequest> GatewayBox::requests() const { return impl_->record().All(); }

std::vector<std::string> GatewayBox::refusals() const { return impl_->player().refusals(); }

const std::vector<Scenario>& GatewayBox::scenarios() const { return impl_->player().scenarios(); }
