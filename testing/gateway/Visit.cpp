#include "testing/gateway/Visit.h"

#include <openssl/rand.h>

#include <stdexcept>

namespace {

Role RoleOf(const std::string& host) {
  if (host == kGatewayHost) return Role::kGateway;
  if (host == kIdentityProviderHost) return Role::kIdentityProvider;
  return host == kThirdHost ? Role::kThird : Role::kNone;
}

}  // namespace

Visit::Visit(const std::string& scheme, const httplib::Request& request,
             httplib::Response& response)
    : scheme_(scheme), request_(request), response_(response) {
  const std::string host = request.get_header_value("Host");
  const size_t colon = host.find(':');
  if (colon != std::string::npos) port_suffix_ = host.substr(colon);
  role_ = RoleOf(host.substr(0, colon));
  response_.set_header("Cache-Control", "no-store");
}

std::string Visit::Address(const std::string& host, const std::string& path_and_query) const {
  return scheme_ + "://" + host + port_suffix_ + path_and_query;
}

std::string Visit::Behind(const std::string& prefix) const {
  return path().compare(0, prefix.size(), prefix) == 0 ? path().substr(prefix.size()) : "";
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

void Visit::SetCookie(const std::string& name, const std::string& value,
                      const std::string& attributes) {
  response_.headers.emplace("Set-Cookie", name + "=" + value + "; Path=/" + attributes);
}

void Visit::Redirect(const std::string& address) { response_.set_redirect(address, 303); }

void Visit::Page(const std::string& html, int status) {
  response_.status = status;
  response_.set_content(html, "text/html; charset=utf-8");
}

void Visit::Send(const std::string& body, const std::string& type) {
  response_.set_content(body, type.c_str());
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
