#include "tools/gateway/Visit.h"

#include <netinet/in.h>
#include <openssl/rand.h>
#include <sys/socket.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr char kDomain[] = ".localhost";

// "gateway" of "gateway.localhost" and of "expired.gateway.localhost".
std::string HostOf(const std::string& name) {
  const size_t domain = name.rfind(kDomain);
  if (domain == std::string::npos || domain + sizeof kDomain - 1 != name.size()) return "";
  const std::string rest = name.substr(0, domain);
  const size_t dot = rest.rfind('.');
  const std::string host = dot == std::string::npos ? rest : rest.substr(dot + 1);
  return host == "gateway" || host == "idp" || host == "third" ? host : "";
}

}  // namespace

Visit::Visit(const std::string& scheme, const httplib::Request& request,
             httplib::Response& response)
    : scheme_(scheme), request_(request), response_(response) {
  const std::string name = request.get_header_value("Host");
  const size_t colon = name.find(':');
  if (colon != std::string::npos) port_suffix_ = name.substr(colon);
  host_ = HostOf(name.substr(0, colon));
  response_.set_header("Cache-Control", "no-store");
}

std::string Visit::scenario() const {
  const size_t slash = path().find('/', 1);
  return slash == std::string::npos ? "" : path().substr(1, slash - 1);
}

std::string Visit::page() const {
  const size_t slash = path().find('/', 1);
  return slash == std::string::npos ? "" : host_ + path().substr(slash);
}

std::string Visit::Origin(const std::string& name) const {
  return scheme_ + "://" + name + kDomain + port_suffix_;
}

std::string Visit::Parameter(const std::string& name) const {
  return request_.get_param_value(name.c_str());
}

std::string Visit::Cookie(const std::string& name) const {
  const std::string all = "; " + request_.get_header_value("Cookie") + ";";
  const size_t found = all.find("; " + name + "=");
  if (found == std::string::npos) return "";
  const size_t value = found + 2 + name.size() + 1;
  return all.substr(value, all.find(';', value) - value);
}

void Visit::Page(const std::string& html, int status) {
  response_.status = status;
  response_.set_content(html, "text/html; charset=utf-8");
}

void Visit::Send(const std::string& body, const std::string& type) {
  response_.set_content(body, type.c_str());
}

void Visit::CutConnection() {
  // The library does not tell the socket; it is the one whose other end is the client's.
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/fd", none)) {
    const int descriptor = std::atoi(entry.path().filename().c_str());
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
        peer.sin_family == AF_INET && ntohs(peer.sin_port) == request_.remote_port) {
      shutdown(descriptor, SHUT_RDWR);
    }
  }
}

std::string RandomToken() {
  unsigned char bytes[16];
  if (RAND_bytes(bytes, sizeof bytes) != 1) throw std::runtime_error("no random numbers");
  std::string token;
  for (const unsigned char byte : bytes) {
    token += "0123456789abcdef"[byte >> 4];
    token += "0123456789abcdef"[byte & 15];
  }
  return token;
}
