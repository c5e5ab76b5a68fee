// One request to the box, as the hosts it plays see it.

#ifndef TESTING_GATEWAY_VISIT_H_
#define TESTING_GATEWAY_VISIT_H_

#include <httplib.h>

#include <string>

enum class Role { kGateway, kIdentityProvider, kThird, kNone };

inline constexpr char kGatewayHost[] = "gateway.localhost";
inline constexpr char kIdentityProviderHost[] = "idp.localhost";
inline constexpr char kThirdHost[] = "third.localhost";

class Visit {
 public:
  // `scheme` is "http" or "https", by the server that took the request.
  Visit(const std::string& scheme, const httplib::Request& request, httplib::Response& response);

  Role role() const { return role_; }
  const std::string& path() const { return request_.path; }
  bool is_post() const { return request_.method == "POST"; }
  bool is_secure() const { return scheme_ == "https"; }

  // The address of a path on one of the hosts, with this request's scheme and port.
  std::string Address(const std::string& host, const std::string& path_and_query) const;
  // The rest of the path behind a prefix such as "/saml/"; empty when it begins otherwise.
  std::string Behind(const std::string& prefix) const;

  // A parameter of the query or of the form; empty when missing.
  std::string Parameter(const std::string& name) const;
  // The value of a cookie that came with the request; empty when missing.
  std::string Cookie(const std::string& name) const;
  // True when the page that comes next shall sign in by itself ("auto=1", carried along).
  bool signs_in_by_itself() const { return Parameter("auto") == "1"; }
  // "auto=1" or "auto=0", for addresses and forms that lead on.
  std::string Automatic() const { return signs_in_by_itself() ? "auto=1" : "auto=0"; }

  // `attributes` is appended, for example "; HttpOnly". The path is always "/".
  void SetCookie(const std::string& name, const std::string& value,
                 const std::string& attributes = "");
  void Redirect(const std::string& address);
  void Page(const std::string& html, int status = 200);
  void Send(const std::string& body, const std::string& type);

 private:
  const std::string scheme_;
  const httplib::Request& request_;
  httplib::Response& response_;
  std::string port_suffix_;
  Role role_ = Role::kNone;
};

// 128 random bits in hexadecimal.
std::string RandomToken();

#endif  // TESTING_GATEWAY_VISIT_H_
